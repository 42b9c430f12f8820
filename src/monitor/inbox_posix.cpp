#include "monitor/inbox.h"

#include <sys/eventfd.h>
#include <utility>

Inbox::Inbox()
    : wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

void Inbox::put(Chunk&& chunk)
{
    std::unique_lock lock(mutex);
    room.wait(lock, [this] { return bytes < MOST_BYTES || stopped; });
    bytes += chunk.bytes.size();
    const bool first = waiting.isEmpty();
    waiting.append(std::move(chunk));
    if (first)
        rouse();
}

void Inbox::put_note(const QString& text, std::int64_t time_ns)
{
    Chunk chunk;
    chunk.time_ns = time_ns;
    chunk.note = text;
    const std::lock_guard lock(mutex);
    waiting.append(std::move(chunk));
    rouse();
}

void Inbox::put_end()
{
    const std::lock_guard lock(mutex);
    ended = true;
    rouse();
}

QVector<Chunk> Inbox::take(bool& at_end)
{
    const std::lock_guard lock(mutex);
    eventfd_t count = 0;
    ::eventfd_read(wake.number(), &count);
    at_end = std::exchange(ended, false);
    bytes = 0;
    room.notify_one();
    return std::exchange(waiting, {});
}

void Inbox::stop()
{
    const std::lock_guard lock(mutex);
    stopped = true;
    room.notify_one();
}

void Inbox::restart()
{
    const std::lock_guard lock(mutex);
    stopped = false;
    ended = false;
}

void Inbox::rouse()
{
    ::eventfd_write(wake.number(), 1);
}
