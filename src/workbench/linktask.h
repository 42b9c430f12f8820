// Work on the thread of a link that can be aborted and waited for.
#pragma once

#include "workbench/linkworker.h"

#include <future>
#include <mutex>

// Belongs to the window's thread. One piece of work at a time.
class LinkTask
{
public:
    using Step = std::function<void()>;

    LinkTask() = default;
    // Aborts the work and waits for it. The step of its end doesn't run then.
    ~LinkTask();
    LinkTask(const LinkTask&) = delete;
    LinkTask& operator=(const LinkTask&) = delete;

    bool running() const { return under_way; }
    // `work` runs on the link's thread, with nothing when the link has gone; then `ended` here.
    // Only while nothing is running; the link outlives it.
    void start(LinkWorker& link, const LinkWorker::Job& work, const Step& ended);
    void abort();

    // For the work:
    bool aborted() const { return abort_asked; }
    // What abort() does beside that, on its own thread, until another step or none is set. A step
    // that comes after the abort is done at once.
    void abort_step_set(const Step& step);
    // `step` runs on the window's thread, in turn and before the end.
    void report(Step step) { home.post(std::move(step)); }

private:
    Mailbox home; // for what comes back from the link's thread
    bool under_way = false;
    std::atomic<bool> abort_asked{false};
    std::mutex mutex; // guards the step
    Step abort_step;
    std::future<void> left; // done when the last work has left the link's thread
};
