// A module with application and boot code for the upgrader to talk to, with faults on demand, and
// an upgrader on it.
#pragma once

#include "loader.h"
#include "qframernull.h"
#include "transcript.h"

#include <QTemporaryDir>
#include <functional>
#include <memorylink.h>

// Takes requests and gives replies as one frame each; its wire code is its own.
class BootModule
{
public:
    QByteArray answer(const QByteArray& request);

    QByteArray name = "M1";
    quint16 page_size = 4096;
    quint16 mtu = 1024;
    bool in_boot = false;
    bool obeys_enter = true;
    QByteArray flash;
    // Asked first: a reply of its own to this request, or a null one for the module's.
    std::function<QByteArray(const QByteArray& request)> fault;
    int reboots = 0;

private:
    QByteArray info() const;
    bool matches(const QByteArray& request) const;
};

// A link on a BootModule, a Loader on it, and all it says in one transcript: the requests as "> "
// and their first 14 bytes, boxes as "box ", other signals by name, logs as they are.
class Bench
{
public:
    Bench();

    // A file of this content under this name in a folder of its own; chosen for the next run.
    void choose(const QString& name, const QByteArray& content);
    // Runs to the end; gives the transcript.
    QStringList run();
    // Waits for the end of a run that was started.
    void finish();

    BootModule module;
    MemoryLink link;
    Transcript transcript;
    Gate gate; // visited at each request
    QFramerNull framer{&link};

private:
    QTemporaryDir dir;
    std::atomic<int> ended{0};
    int awaited = 0;

public:
    Loader loader{&framer}; // the first to go
};

// 10,000 bytes in which each page differs from the others.
QByteArray firmware();
