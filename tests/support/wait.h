// Waiting for a condition with the event loop running, so that no test depends on a machine's
// speed.
#pragma once

#include "print.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTest>
#include <QThread>

constexpr int PATIENCE_MS = 20000; // far beyond a loaded machine's needs; only failures wait it out

// QTest::qWaitFor looks each 10 ms, which is long where a condition itself moves data.
template <typename Condition> bool wait_until(Condition condition, int patience_ms = PATIENCE_MS)
{
    constexpr unsigned PAUSE_US = 200;
    const QDeadlineTimer patience(patience_ms);
    while (!condition()) {
        if (patience.hasExpired())
            return false;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::usleep(PAUSE_US);
    }
    return true;
}
