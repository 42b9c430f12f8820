// A way to a Dorv module: its link open, and the operations on it.
#pragma once

#include "cli/stackoptions.h"
#include "tools/dorvcfg.h"

struct DorvSession
{
    // Opens the link. Throws Failure.
    explicit DorvSession(const Invocation& invocation);

    // Why an operation failed: what the module said, or that it was silent.
    Failure failure(const QString& what) const;
    // Throws that failure when the result tells of one, or the reply does: some operations take any
    // reply for a yes.
    void check(int result, const QString& what) const;
    QByteArray reply() const { return connection.stack.link().last_received(); }

    Connection connection;
    DorvCfg cfg;
};
