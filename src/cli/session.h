// The ways from a command to its device: connection and tool, and why an operation failed.
#pragma once

#include "cli/exchangelog.h"
#include "cli/invocation.h"
#include "cli/linkfailure.h"
#include "cli/linkrecord.h"
#include "stack/stack.h"
#include "tools/cnetcfg.h"
#include "tools/dorvcfg.h"

// The options that say how a device is connected. --frame is among them for commands that speak
// through framers.
QList<QCommandLineOption> stack_options(Needs needs);

// The link and framers as the options say. Throws Failure when the texts are wrong.
StackDescription stack_description(const Invocation& invocation);

// One for each --link, on the same framers; at least one.
QVector<StackDescription> stack_descriptions(const Invocation& invocation);

// A log, a record and a stack as the options say, not open yet. Throws Failure when the texts are
// wrong.
struct Connection
{
    explicit Connection(Invocation& invocation);

    StackDescription description;
    ExchangeLog log;
    RecordFile file;
    LinkRecord record; // of what passes the stack's link
    Stack stack;
};

// A way to a cnet device, not open yet.
struct CnetSession
{
    explicit CnetSession(Invocation& invocation);

    // Why the last operation failed, or the search ended.
    Failure failure(const QString& what) const;

    Connection connection;
    CnetCfg cfg;
};

// A way to a Dorv module.
struct DorvSession
{
    // Opens the link. Throws Failure.
    explicit DorvSession(Invocation& invocation);

    // Why the last operation failed.
    Failure failure(const QString& what) const;
    // Throws that failure unless the last operation is done.
    void check(const QString& what) const;

    Connection connection;
    DorvCfg cfg;
};
