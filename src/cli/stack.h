// A link with its framers, assembled from their description.
#pragma once

#include "failure.h"
#include "stackspec.h"
#include "tracedlink.h"

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
    QFramer& top() { return *framers.back(); }
    // The framer on the link alone, below all others.
    QFramer& lowest() { return *framers.front(); }

    // Opens the link on this thread. Throws Failure.
    void open();
    // Opens the link on the worker's own thread when it starts and closes it there when it ends, as
    // a network socket belongs to the thread that opens it. `opened` is called there, before the
    // worker's run, and tells whether that went well.
    void open_on(QThread& worker, const std::function<void(bool)>& opened);
    // Waits for the worker's end and has the link back on this thread.
    void take_back(QThread& worker);
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
