// A framer for cnet devices that gives up a local device which stays busy.
#pragma once

#include "framers/qframercnet.h"

#include <QThread>

class BoundedCnet : public QFramerCnet
{
public:
    // One that is busy for longer than a second won't recover by itself.
    static constexpr int ATTEMPTS = 50;
    static constexpr unsigned PAUSE_MS = 20;

    explicit BoundedCnet(QFramer* lower)
        : QFramerCnet(lower)
    {
        keep_trying_set([this] {
            QThread::msleep(PAUSE_MS);
            return ++attempts < ATTEMPTS;
        });
    }

    // The attempts count anew.
    int write(const char* buffer, int nbytes) override
    {
        attempts = 0;
        return QFramerCnet::write(buffer, nbytes);
    }

private:
    int attempts = 0;
};
