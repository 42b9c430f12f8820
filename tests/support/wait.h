// Waiting for a condition with the event loop running, so that no test depends on a machine's
// speed.
#pragma once

#include <QTest>

constexpr int PATIENCE_MS =
    20000; // far beyond what a loaded machine needs; only failures wait it out

template <typename Condition> bool wait_until(Condition condition, int patience_ms = PATIENCE_MS)
{
    return QTest::qWaitFor(condition, patience_ms);
}
