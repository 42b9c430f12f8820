// A link with its framers, assembled from their description.
#pragma once

#include "cli/failure.h"
#include "cli/stacktext.h"
#include "cli/tracedlink.h"
#include "framers/qframer.h"

#include <QThread>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

struct StackDescription
{
    LinkDescription link;
    QVector<FramerDescription> framers;
    int timeout_ms = 0;
};

// On the link, the lowest first; the lowest passes the payload as it is.
std::vector<std::unique_ptr<QFramer>> make_framers(QLink& link,
                                                   const QVector<FramerDescription>& descriptions);

class Stack
{
public:
    // `log` outlives it.
    Stack(const StackDescription& description, ExchangeLog& log);
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
    // opens it. `start` starts the worker. When the link can't be opened, `give_up` is called on
    // the worker's thread before its run and has it end soon. Throws Failure then, and when the
    // worker doesn't start; in that case the stack is of no more use.
    void run_worker(QThread& worker, const std::function<void()>& start,
                    const std::function<void()>& give_up);
    // The port has gone, or the connection is lost.
    bool lost() const { return port_gone() || traced->failed(); }
    // Why there is no answer: the port has gone, the connection is lost, or the device is silent.
    Failure no_answer(const QString& what, const QString& advice) const;

private:
    void add_link(int timeout_ms);
    bool port_gone() const;
    Failure open_failure() const;

    LinkDescription description;
    ExchangeLog& log;
    std::unique_ptr<QObject> link_object;
    std::unique_ptr<TracedLink> traced;
    std::vector<std::unique_ptr<QFramer>> framers; // the lowest first
    // Set by a worker that is done with the link. It orders what the worker did before what its
    // owner does next. The end of a QThread does so too, but race detectors don't see that.
    std::atomic<bool> given_back{false};
};
