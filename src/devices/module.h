// What a simulated module does with its requests, free of the line, its faults and its pace.
#pragma once

#include "devices/device.h"

#include <functional>
#include <vector>

// Where a device reports what it does; empty when nobody wants to know.
using Journal = std::function<void(const QString&)>;

struct Reply
{
    QByteArray bytes;                  // one frame or one line
    std::chrono::nanoseconds after{0}; // from the request, or from the reply before it
};

struct Answer
{
    std::vector<Reply> replies;
    bool resets = false; // the module starts anew once the replies are out
};

class Module
{
public:
    virtual ~Module() = default;

    // How many of the heard bytes make the first request; 0 while it is not complete. With
    // `silence` the line has been quiet for longer than a request may pause.
    virtual int request_size(const QByteArray& heard, bool silence) const = 0;
    virtual Answer answer(const QByteArray& request) = 0;
    // The module starts anew, by a request or because its supply failed.
    virtual void restart() {}

    // Modules that speak without being asked: when, and what.
    virtual Time next_report(Time) const { return NEVER; }
    virtual QByteArray report(Time) { return {}; }
};
