// A tool's thread at work on a link in memory, and all that it sends and says, in order.
#pragma once

#include <QStringList>
#include <atomic>
#include <memorylink.h>
#include <wait.h>

inline QString shown(int number)
{
    return QString::number(number);
}

inline QString shown(const QString& text)
{
    return text;
}

inline QString hex_of(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
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
        const auto add_line = [this, word](const auto&... values) {
            add(QStringList{word, shown(values)...}.join(' ').trimmed());
        };
        QObject::connect(&tool, signal, &tool, add_line, Qt::DirectConnection);
    }
    void note_end(QThread& tool)
    {
        QObject::connect(
            &tool, &QThread::finished, &tool, [this] { ended = true; }, Qt::DirectConnection);
    }

private:
    std::atomic<bool> ended{false};
};
