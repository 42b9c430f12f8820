// What a tool's thread did, in order, kept for the test's thread.
#pragma once

#include <QStringList>
#include <atomic>
#include <mutex>
#include <wait.h>

class Transcript
{
public:
    void add(const QString& line)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        lines.append(line);
    }
    // The lines so far, which a new list follows.
    QStringList take()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return std::exchange(lines, {});
    }

private:
    std::mutex mutex;
    QStringList lines;
};

inline QString hex_of(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}

// A place at which a tool's thread is held until the test has done something meanwhile.
class Gate
{
public:
    // Closes the gate at the visit with this number, counted from 1; 0 leaves it open.
    void close_at(int visit)
    {
        visits = 0;
        reached = released = false;
        closed_at = visit;
    }
    // From the tool's thread.
    void visit()
    {
        if (++visits != closed_at)
            return;
        reached = true;
        while (!released)
            QThread::usleep(50);
    }
    bool is_reached() const { return reached; }
    void release() { released = true; }

private:
    std::atomic<int> visits{0};
    std::atomic<int> closed_at{0};
    std::atomic<bool> reached{false};
    std::atomic<bool> released{false};
};
