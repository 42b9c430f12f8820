#include "workbench/linktask.h"

LinkTask::~LinkTask()
{
    abort();
    if (left.valid())
        left.wait();
}

void LinkTask::start(LinkWorker& link, const LinkWorker::Job& work, const Step& ended)
{
    under_way = true;
    abort_asked = false;
    const auto leaving = std::make_shared<std::promise<void>>();
    left = leaving->get_future();
    const auto job = [this, work](Stack* stack) {
        work(stack);
        abort_step_set({});
    };
    link.run(job, [this, ended, leaving] {
        home.post([this, ended] {
            under_way = false;
            ended();
        });
        leaving->set_value();
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
