// The longest time between two turns of the event loop.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <algorithm>
#include <ctime>

class StallWatch : public QObject
{
public:
    StallWatch()
    {
        reset();
        startTimer(1, Qt::PreciseTimer);
    }
    void reset()
    {
        worst_ns = 0;
        worst_cpu = 0;
        turn();
    }
    double worst_ms() const { return double(worst_ns) / 1e6; }
    // The longest by the CPU that this thread used; the rest is other programs'.
    double worst_cpu_ms() const { return worst_cpu; }

protected:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        worst_ns = std::max(worst_ns, clock.nsecsElapsed());
        worst_cpu = std::max(worst_cpu, cpu_ms() - cpu_before);
        turn();
    }

private:
    static double cpu_ms()
    {
        timespec t = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
    }
    void turn()
    {
        clock.start();
        cpu_before = cpu_ms();
    }

    QElapsedTimer clock;
    double cpu_before = 0;
    qint64 worst_ns = 0;
    double worst_cpu = 0;
};
