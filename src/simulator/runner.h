// The loop that joins a device, the line and a transport until it is asked to end.
#pragma once

#include "devices/device.h"
#include "devices/lane.h"
#include "simulator/transport.h"

#include <csignal>

class Runner
{
public:
    Runner(Device& device, Transport& transport, int baud);

    // Runs until `stop` is raised by a signal handler. The signals that may raise it must be
    // blocked; `while_waiting` is the mask that lets them in.
    void run(const volatile std::sig_atomic_t& stop, const sigset_t& while_waiting);

private:
    void host_to_device(Time now);
    void device_to_host(Time now);
    Time next_event(Time now) const;
    bool device_may_send() const;
    bool finished(Time now) const;

    Device& device;
    Transport& transport;
    Lane from_host;
    Lane to_host;
    Time answer_starts{}; // what the device sends now goes out from then on
    QByteArray unsent;    // has crossed the line, and the transport has not taken it yet
};
