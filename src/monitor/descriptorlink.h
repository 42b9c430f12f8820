// A link over a descriptor, for framers: a read ends with a silence.
#pragma once

#include "links/qlink.h"
#include "monitor/chunk.h"
#include "monitor/wire.h"

#include <functional>

//   read        waits at most the time-out for the first byte, then goes on until nbytes have come
//               or nothing for the gap; a datagram ends it too. -1 when the device has gone.
//   write       all of it, or what was taken within the time-out; -1 when the device has gone
//   getchar     LINK_IO when none came in time
class DescriptorLink : public QLink
{
public:
    using Tap = std::function<void(const Chunk&)>;

    // `tap` sees each read and write of the wire; it may be empty.
    DescriptorLink(Wire& wire, int timeout_ms, int gap_ms, const Tap& tap);

    int open() override { return 0; }
    bool is_open() override { return !lost; }
    int close() override { return 0; }
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;
    bool can_read_line() override;

    // For the monitor: what was read since the last call, and when its first byte was.
    QByteArray taken(std::int64_t& time_ns);
    bool has_gone() const { return lost; }
    // The last write: the wire did not take all of it.
    bool has_failed() const { return write_failed; }
    bool has_waiting() const { return !ahead.isEmpty(); }

private:
    bool wait_for(short events, int ms);
    bool pull();

    Wire& wire;
    const int timeout_ms;
    const int gap_ms;
    const Tap tap;
    QByteArray ahead; // read from the descriptor and by nobody yet
    std::int64_t ahead_ns = 0;
    QByteArray log;
    std::int64_t log_ns = 0;
    bool lost = false;
    bool write_failed = false;
};
