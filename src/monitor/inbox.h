// What a thread that reads hands to the one that shows.
#pragma once

#include "monitor/chunk.h"
#include "serialport/filedescriptor.h"

#include <QVector>
#include <condition_variable>
#include <mutex>

class Inbox
{
public:
    // When so many bytes wait, the reader pauses, and the system's own flow control holds the
    // device. A minute and more of the fastest adapters.
    static constexpr std::int64_t MOST_BYTES = 64LL * 1024 * 1024;

    Inbox();

    // Readable for poll() while something waits.
    int descriptor() const { return wake.number(); }

    // By the reader. Waits while it is full, unless stopped.
    void put(Chunk&& chunk);
    void put_end();
    // By any thread; never waits.
    void put_note(const QString& text, std::int64_t time_ns);
    // All that waits. `ended`: the reader has met the end of the device, and is done.
    QVector<Chunk> take(bool& ended);
    void stop();
    void restart();

private:
    void rouse();

    std::mutex mutex;
    std::condition_variable room;
    QVector<Chunk> waiting;
    std::int64_t bytes = 0;
    bool ended = false;
    bool stopped = false;
    const FileDescriptor wake; // an eventfd; written when the first of `waiting` comes
};
