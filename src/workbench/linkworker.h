// A link with its framers on a thread of its own: opened, used and closed there.
#pragma once

#include "stack/stack.h"
#include "workbench/logfeed.h"
#include "workbench/mailbox.h"

#include <QObject>
#include <QThread>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class LinkInside;

// Belongs to the window's thread, like its signals. Work for the link is handed over as jobs, which
// run one after the other; nothing here waits but the destructor, for the job under way.
class LinkWorker : public QObject
{
    Q_OBJECT

public:
    enum class State { Closed, Opening, Open, Closing };
    // With nothing when the link has gone.
    using Job = std::function<void(Stack*)>;

    // `feed` outlives it, as does `recorder`, which hears of all that passes the link.
    explicit LinkWorker(LogFeed& feed, ExchangeSink* recorder = nullptr);
    // Whoever runs a job that can be aborted does so first.
    ~LinkWorker() override;

    State state() const { return now; }
    // Why the link isn't open, or nothing after a close that was asked for.
    const std::optional<LinkProblem>& problem() const { return last_problem; }

    // Only when closed or closing.
    void open(const StackDescription& description);
    // After the jobs under way. A link that is being opened is closed then.
    void close();
    // On the link's thread, in any case but that of an early end of the worker; `after` follows
    // there, once the job no longer counts.
    void run(const Job& job, const std::function<void()>& after);
    // A job is under way, or waits.
    bool busy() const { return jobs > 0; }

signals:
    void state_changed();

private:
    void state_set(State state, const std::optional<LinkProblem>& problem);

    LogFeed& feed;
    ExchangeSink* const recorder;
    Mailbox home; // for what comes back from the link's thread
    QThread thread;
    LinkInside* inside; // lives on the thread
    State now = State::Closed;
    std::atomic<int> jobs{0};
    std::optional<LinkProblem> last_problem;
};
