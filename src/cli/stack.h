// A link with its framers, assembled from their description.
#pragma once

#include "cli/failure.h"
#include "cli/stackspec.h"
#include "cli/tracedlink.h"

#include <QThread>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class QFramer;

struct StackSpec
{
    LinkSpec link;
    FramerSpecs framers;
    int timeout_ms;
};

class Stack
{
public:
    // `log` outlives it.
    Stack(const StackSpec& spec, ExchangeLog& log);
    ~Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    TracedLink& link() { return *traced; }
    const TracedLink& link() const { return *traced; }
    QFramer& top() { return *framers.back(); }

    // Opens the link on this thread. Throws Failure.
    void open();
    // Has the worker run with the link open, in an event loop until it has ended. The link is
    // opened and closed on the worker's own thread, as a network socket belongs to the thread that
    // opens it. `start` starts the worker; `opened` is called on its thread, before its run, and
    // tells whether the link could be opened. Throws Failure when the worker doesn't start; the
    // stack is then of no more use.
    void run_worker(QThread& worker, const std::function<void()>& start,
                    const std::function<void(bool)>& opened);
    // Why the link could not be opened.
    Failure open_failure() const;
    // Why nothing came: the port has gone, the connection is lost, or the device is silent.
    Failure no_answer(const QString& what, const QString& advice) const;

private:
    void add_link(const StackSpec& spec);
    void add_framer(const FramerSpec& spec);

    LinkSpec spec;
    ExchangeLog& log;
    std::unique_ptr<QObject> link_object;
    std::unique_ptr<TracedLink> traced;
    std::vector<std::unique_ptr<QFramer>> framers; // the lowest first
    // Set by a worker that is done with the link. It orders what the worker did before what its
    // owner does next, which the end of a QThread does too, but out of sight of race detectors.
    std::atomic<bool> given_back{false};
};
