// Functions that other threads hand to the thread of an object.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <atomic>
#include <functional>
#include <future>

// A queued call of Qt does the same, but race detectors don't see the locks inside Qt. Here an
// atomic count orders what was done before post() and what the job does.
class Mailbox : public QObject
{
public:
    using Job = std::function<void()>;

    // From any thread: `job` runs in the event loop of the mailbox's thread, after those posted
    // before. What hasn't run at the end of the mailbox never does.
    void post(Job job)
    {
        auto* const letter = new Letter(std::move(job));
        ++posted;
        QCoreApplication::postEvent(this, letter);
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
    // All that was done before any post() so far comes before what follows.
    void catch_up() const { posted.load(); }

protected:
    void customEvent(QEvent* event) override
    {
        catch_up();
        static_cast<Letter*>(event)->job();
    }

private:
    class Letter : public QEvent
    {
    public:
        explicit Letter(Job job)
            : QEvent(QEvent::User)
            , job(std::move(job))
        {
        }
        const Job job;
    };

    std::atomic<int> posted{0};
};
