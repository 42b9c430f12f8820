#include "workbench/linkworker.h"

#include <QTimer>

namespace {
constexpr int WATCH_MS = 500; // a link that nobody uses says by itself only so late that it's gone
} // namespace

// What of a worker lives on its thread.
class LinkInside : public Mailbox
{
public:
    // None after a success.
    std::optional<LinkProblem> open(const StackDescription& description, LogFeed& feed,
                                    ExchangeSink* recorder)
    {
        close(); // the log goes after the stack that uses it
        try {
            log = std::make_unique<LinkLog>(feed, link_name(description.link), recorder);
            stack = std::make_unique<Stack>(description, *log);
            stack->open();
            if (recorder)
                recorder->note("open: " + link_text(description.link));
            return std::nullopt;
        } catch (const LinkProblem& problem) {
            close();
            return problem;
        }
    }

    // Calls `lost` once the link has gone.
    void watch(const std::function<void(LinkProblem)>& lost)
    {
        timer = std::make_unique<QTimer>();
        connect(timer.get(), &QTimer::timeout, this, [this, lost] {
            if (!stack || (!stack->lost() && stack->link().is_open()))
                return;
            LinkProblem problem = stack->trouble();
            if (problem.kind != LinkTrouble::PortGone)
                problem.kind = LinkTrouble::ConnectionLost;
            timer->stop();
            close();
            lost(problem);
        });
        timer->start(WATCH_MS);
    }

    void close()
    {
        if (timer)
            timer->stop();
        stack.reset();
        log.reset();
    }

    std::unique_ptr<LinkLog> log;
    std::unique_ptr<Stack> stack;
    std::unique_ptr<QTimer> timer;
};

LinkWorker::LinkWorker(LogFeed& feed, ExchangeSink* recorder)
    : feed(feed)
    , recorder(recorder)
    , inside(new LinkInside)
{
    inside->moveToThread(&thread);
    connect(&thread, &QThread::finished, inside, &QObject::deleteLater);
    thread.setObjectName("link");
}

LinkWorker::~LinkWorker()
{
    if (thread.isRunning()) {
        inside->post_and_wait([this] { inside->close(); });
        thread.quit();
        thread.wait();
    } else {
        delete inside;
    }
}

void LinkWorker::open(const StackDescription& description)
{
    state_set(State::Opening, std::nullopt);
    thread.start();
    // The system may refuse another thread.
    if (!thread.isRunning())
        return state_set(State::Closed, LinkProblem{LinkTrouble::NoThread, {}});
    const auto lost = [this](const LinkProblem& problem) {
        home.post([this, problem] { state_set(State::Closed, problem); });
    };
    inside->post([this, inside = inside, description, lost] {
        const auto problem = inside->open(description, feed, recorder);
        if (!problem)
            inside->watch(lost);
        home.post([this, problem] {
            if (problem)
                state_set(State::Closed, problem);
            else if (now == State::Opening)
                state_set(State::Open, std::nullopt);
        });
    });
}

void LinkWorker::close()
{
    if (now == State::Closed || now == State::Closing)
        return;
    state_set(State::Closing, std::nullopt);
    inside->post([this, inside = inside] {
        inside->close();
        home.post([this] {
            if (now == State::Closing) // else it is being opened again
                state_set(State::Closed, last_problem);
        });
    });
}

void LinkWorker::run(const Job& job, const std::function<void()>& after)
{
    ++jobs;
    inside->post([this, inside = inside, job, after] {
        job(inside->stack.get());
        --jobs;
        after();
    });
}

void LinkWorker::state_set(State state, const std::optional<LinkProblem>& problem)
{
    now = state;
    last_problem = problem;
    emit state_changed();
}
