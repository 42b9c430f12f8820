// A link in memory with a scripted device on its other side.
#pragma once

#include "links/qlink.h"

#include <QByteArrayList>
#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>

// Time does not exist here: a read gives at once what waits, as if its time-out had then run out.
class MemoryLink : public QLink
{
public:
    // Bytes that wait to be read without having been asked for.
    void arrive(const QByteArray& bytes) { waiting += bytes; }
    // Replies to the writes to come, one a write, in this order; an empty one is a silent device.
    void reply(const QByteArray& bytes) { replies += bytes; }
    // A device with a mind of its own, asked at each write for which no reply is queued.
    std::function<QByteArray(const QByteArray& request)> device;

    // All writes since construction, or since the test cleared them.
    QByteArrayList written;
    // The most that one write takes; more is cut short.
    int write_limit = INT_MAX;

    const QByteArray& unread() const { return waiting; }

    int open() override
    {
        opened = true;
        return 0;
    }
    bool is_open() override { return opened; }
    int close() override
    {
        opened = false;
        return 0;
    }
    void flush() override { waiting.clear(); }
    int bytes_available() override { return int(waiting.size()); }
    int getchar() override
    {
        char byte = 0;
        return read(&byte, 1) > 0 ? int(std::uint8_t(byte)) : int(LINK_IO);
    }
    int putchar(int) override { return LINK_IO; } // no framer uses it
    int read(char* buffer, int nbytes) override
    {
        if (!opened)
            return LINK_CLOSED;
        const QByteArray taken = waiting.left(qMax(0, nbytes));
        waiting.remove(0, taken.size());
        if (!taken.isEmpty())
            std::memcpy(buffer, taken.constData(), size_t(taken.size()));
        return int(taken.size());
    }
    int write(const char* buffer, int nbytes) override
    {
        if (!opened)
            return LINK_CLOSED;
        const QByteArray request(buffer, qMax(0, qMin(nbytes, write_limit)));
        written += request;
        if (!replies.isEmpty())
            waiting += replies.takeFirst();
        else if (device)
            waiting += device(request);
        return int(request.size());
    }

private:
    bool opened = true; // most tests begin with a link that is ready
    QByteArray waiting;
    QByteArrayList replies;
};
