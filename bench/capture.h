// What the parts of bench_capture share.
#pragma once

#include <QString>
#include <chrono>
#include <cstdio>

inline int faults = 0;

inline void expect(bool good, const QString& what)
{
    faults += !good;
    if (!good)
        std::printf("FAULT: %s\n", qPrintable(what));
}

inline double ms_since(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

void kill_recorders(int runs);
