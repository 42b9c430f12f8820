#include "workbench/linktask.h"

LinkTask::~LinkTask()
{
    abort();
    left->acquire(started);
    home.catch_up();
}

void LinkTask::start(LinkWorker& link, const LinkWorker::Job& work, const Step& ended)
{
    under_way = true;
    abort_asked = false;
    ++started;
    const auto job = [this, work](Stack* stack) {
        work(stack);
        abort_step_set({});
    };
    link.run(job, [this, ended, left = left] {
        home.post([this, ended] {
            under_way = false;
            ended();
        });
        left->release();
    });
}

void LinkTask::abort()
{
    const std::lock_guard<std::mutex> lock(mutex);
    abort_asked = true;
    if (abort_step)
        abort_step();
}

void LinkTask::abort_step_set(const Step& step)
{
    const std::lock_guard<std::mutex> lock(mutex);
    abort_step = step;
    if (abort_step && abort_asked)
        abort_step();
}
