// The wait for a device that has gone: woken by changes of folders, at no cost meanwhile.
#pragma once

#include "serialport/filedescriptor.h"

#include <QStringList>
#include <cstdint>
#include <optional>

// Try at once, then whenever a folder changed. A device that is there and can't be opened yet is
// tried again soon: rights are given, and other programs look at it, in the first moments. Where no
// folder shows a change, it is tried again now and then.
class PortWait
{
public:
    static constexpr int AGAIN_MS = 50; // well below what a user notices; then twice as long
    static constexpr int AGAIN_MOST_MS = 2000;
    static constexpr int BLIND_MS = 1000; // a network, which has its own time-outs

    // From now on changes count. The first try is at that time, or when something changes.
    void begin(const QStringList& folders, std::int64_t first_try_ns);
    void end();
    bool waiting() const { return active; }
    // For poll(); -1 when there is none.
    int descriptor() const { return notify.number(); }
    std::optional<std::int64_t> due() const { return next_try; }
    // Takes the changes. Whether it is time for a try.
    bool is_time(std::int64_t now_ns);
    // A try has failed.
    void failed(bool present, std::int64_t now_ns);

private:
    bool take_changes();
    // Watches the folders, or what is there of the way to them. Whether that is other than before.
    bool watch();

    bool active = false;
    bool blind = false;
    int again_ms = AGAIN_MS;
    FileDescriptor notify;
    QStringList wanted;
    QStringList watched;
    std::optional<std::int64_t> next_try;
};
