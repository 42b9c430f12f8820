// A tool at work on a link in memory, and all that it sends and says, in order.
#pragma once

#include <QStringList>
#include <QVariant>
#include <atomic>
#include <gtest/gtest.h>
#include <memorylink.h>
#include <wait.h>

inline QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

inline QString hex_of(const void* bytes, int count)
{
    return QByteArray(static_cast<const char*>(bytes), count).toHex(' ').toUpper();
}

class ToolRun
{
public:
    // Waits for the end of a started thread; gives the lines and begins new ones.
    QStringList finish(QThread& tool)
    {
        wait_until([this] { return ended.exchange(false); });
        tool.wait();
        return std::exchange(lines, {});
    }

    MemoryLink link;
    QStringList lines;
    // Called on the tool's thread after each line, so that a test can interfere there.
    std::function<void()> on_line;

protected:
    void add(const QString& line)
    {
        lines += line;
        if (on_line)
            on_line();
    }
    // Each emission becomes a line of the word and the signal's values.
    template <typename Tool, typename Signal>
    void note(Tool& tool, Signal signal, const QString& word = {})
    {
        QObject::connect(&tool, signal, [this, word](const auto&... values) {
            add(QStringList{word, QVariant(values).toString()...}.join(' ').trimmed());
        });
    }
    void note_end(QThread& tool)
    {
        QObject::connect(&tool, &QThread::finished, [this] { ended = true; });
    }

private:
    std::atomic<bool> ended{false};
};
