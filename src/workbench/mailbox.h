// Functions that other threads hand to the thread of an object.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <deque>
#include <functional>
#include <future>
#include <mutex>

class Mailbox : public QObject
{
public:
    using Job = std::function<void()>;

    // From any thread: `job` runs in the event loop of the mailbox's thread, after those posted
    // before. What hasn't run at the end of the mailbox never does.
    void post(Job job)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            jobs.push_back(std::move(job));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User)); // one for each job
    }
    // Returns when `job` has run, on the thread of the mailbox; not to be called there.
    void post_and_wait(const Job& job)
    {
        std::promise<void> done;
        post([&] {
            job();
            done.set_value();
        });
        done.get_future().wait();
    }

protected:
    void customEvent(QEvent* /*event*/) override { job_take()(); }

private:
    Job job_take()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        Job job = std::move(jobs.front());
        jobs.pop_front();
        return job;
    }

    std::mutex mutex; // guards the jobs
    std::deque<Job> jobs;
};
