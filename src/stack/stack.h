// A link with its framers, assembled from their description.
#pragma once

#include "links/tcpip_cfg.h"
#include "stack/framerstack.h"
#include "stack/linkproblem.h"
#include "stack/stacktext.h"
#include "stack/tracedlink.h"

#include <QThread>
#include <functional>
#include <memory>

struct StackDescription
{
    LinkDescription link;
    QVector<FramerDescription> framers;
    int timeout_ms = 0;
};

// Of a network link.
tcpip_cfg network_settings(const LinkDescription& link, int timeout_ms);

// On the link, the lowest first; the lowest passes the payload as it is.
std::vector<std::unique_ptr<QFramer>> make_framers(QLink& link,
                                                   const QVector<FramerDescription>& descriptions);

class Stack
{
public:
    // `log` outlives it.
    Stack(const StackDescription& description, ExchangeSink& log);
    ~Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    TracedLink& link() { return *traced; }
    const TracedLink& link() const { return *traced; }
    // Where exchanges and the layers' lines go.
    ExchangeSink& sink() { return log; }
    QFramer& top() { return framers->top(); }

    // Opens the link on this thread. Throws LinkProblem.
    void open();
    // Has the worker run with the link open, in an event loop until it has ended. The link is
    // opened and closed on the worker's own thread, as a network socket belongs to the thread that
    // opens it. `start` starts the worker. When the link can't be opened, `give_up` is called on
    // the worker's thread before its run and has it end soon. Throws LinkProblem then, and when the
    // worker doesn't start; in that case the stack is of no more use.
    void run_worker(QThread& worker, const std::function<void()>& start,
                    const std::function<void()>& give_up);
    // The port has gone, or the connection is lost. For the thread that drives the link, as is the
    // next one.
    bool lost() const { return port_gone() || connection_lost(); }
    // Why there is no answer: PortGone, ConnectionLost, BadAnswer or NoAnswer.
    LinkProblem trouble() const;

private:
    void add_link(int timeout_ms);
    bool port_gone() const;
    bool connection_lost() const;
    QString target() const;
    LinkProblem open_problem() const;

    LinkDescription description;
    ExchangeSink& log;
    std::unique_ptr<QObject> link_object;
    std::unique_ptr<TracedLink> traced;
    std::unique_ptr<FramerStack> framers;
};
