// Waiting for a condition with the event loop running, so that no test depends on a machine's
// speed.
#pragma once

#include "print.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

constexpr int PATIENCE_MS = 20000; // far beyond a loaded machine's needs; only failures wait it out

template <typename Condition> bool wait_until(Condition condition, int patience_ms = PATIENCE_MS)
{
    constexpr unsigned PAUSE_US = 200; // short, as some conditions move data by themselves
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > patience_ms)
            return false;
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::usleep(PAUSE_US);
    }
    return true;
}
