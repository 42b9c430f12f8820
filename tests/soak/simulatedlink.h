// A link to a simulated device in the same process, in simulated time: a wait for bytes skips to
// the moment at which something happens, so that hours of time-outs pass in seconds.
#pragma once

#include "devices/device.h"
#include "devices/lane.h"
#include "links/qlink.h"

// What the caller computes or sleeps counts as well, as real time. The device isn't owned.
class SimulatedLink : public QLink
{
public:
    // baud in bits/s, 0 for no pace; `timeout` is the longest that one read waits.
    SimulatedLink(Device& device, int baud, std::chrono::milliseconds timeout);

    int open() override;
    bool is_open() override { return opened; }
    int close() override;
    void flush() override;
    int bytes_available() override;
    int getchar() override;
    int putchar(int c) override;
    // -1 once the device has cut the line, like a serial port whose adapter was pulled out.
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;

    bool cut() const { return lost; }

private:
    Time now() const { return Clock::now() + skipped; }
    void pass_bytes();
    void pass_bytes_at(Time moment);
    Time next_event(Time after) const;

    Device& device;
    int baud;
    std::chrono::milliseconds timeout;
    std::chrono::nanoseconds skipped{0};
    Time passed_until{}; // nothing is left to happen before
    QByteArray unsent;   // the line has no room for it yet
    Lane from_host;
    Lane to_host;
    QByteArray received;
    bool opened = true;
    bool lost = false;
};
