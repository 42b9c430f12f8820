// A link in memory with a scripted device on its other side.
#pragma once

#include "links/qlink.h"

#include <QByteArrayList>
#include <climits>
#include <cstring>
#include <deque>
#include <functional>

// Time does not exist here: a read gives at once what waits, as if its time-out had then run out.
class MemoryLink : public QLink
{
public:
    // Bytes that wait to be read without having been asked for.
    void arrive(const QByteArray& bytes) { waiting += bytes; }
    // Replies to the writes to come, one a write, in this order; an empty one is a silent device.
    // putchar counts as a write.
    void reply(const QByteArray& bytes) { replies.push_back(bytes); }
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
    void flush() override
    {
        if (opened)
            waiting.clear();
    }
    int bytes_available() override { return opened ? int(waiting.size()) : LINK_CLOSED; }
    int getchar() override
    {
        char byte = 0;
        const int count = read(&byte, 1);
        return count < 0 ? count : count == 0 ? int(LINK_IO) : int(quint8(byte));
    }
    int putchar(int c) override
    {
        const char byte = char(c & 0xFF);
        const int count = write(&byte, 1);
        return count < 0 ? count : count == 0 ? int(LINK_IO) : c;
    }
    int read(char* buffer, int nbytes) override
    {
        if (!opened)
            return LINK_CLOSED;
        const int count = qMax(0, qMin(nbytes, waiting.size()));
        if (count > 0)
            std::memcpy(buffer, waiting.constData(), size_t(count));
        waiting.remove(0, count);
        return count;
    }
    int write(const char* buffer, int nbytes) override
    {
        if (!opened)
            return LINK_CLOSED;
        const QByteArray request(buffer, qMax(0, qMin(nbytes, write_limit)));
        written += request;
        if (!replies.empty()) {
            waiting += replies.front();
            replies.pop_front();
        } else if (device) {
            waiting += device(request);
        }
        return request.size();
    }
    bool can_read_line() override { return opened && waiting.contains('\n'); }

private:
    bool opened = true; // most tests begin with a link that is ready
    QByteArray waiting;
    std::deque<QByteArray> replies;
};
