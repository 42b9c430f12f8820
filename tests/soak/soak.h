// What the soak programs share: a window on a pseudo-terminal, a count of what went wrong, and the
// figures of their own process.
#pragma once

#include "windowtest.h"

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QPixmapCache>
#include <cstdio>
#include <unistd.h>

struct ProcessFigures
{
    double resident_mb;
    int descriptors;
    int threads;

    static ProcessFigures now()
    {
        QFile memory("/proc/self/statm");
        memory.open(QIODevice::ReadOnly);
        const double pages = memory.readAll().split(' ').at(1).toDouble();
        const auto entries = [](const char* folder) {
            return int(QDir(folder).entryList(QDir::AllEntries | QDir::System).size());
        };
        return {pages * double(sysconf(_SC_PAGESIZE)) / 1e6, entries("/proc/self/fd"),
                entries("/proc/self/task")};
    }
};

class Soak : public WindowTest
{
public:
    Soak() { window_start(); }
    int faults = 0;

protected:
    void expect(bool good, const QString& what)
    {
        if (good)
            return;
        ++faults;
        std::printf("FAULT: %s\n", qPrintable(what));
    }
    // The label of the status bar that shows a counter: "RX: ", "TX: " or "CNT: ".
    QLabel* counter(const char* prefix) const
    {
        for (QLabel* label : find<QWidget>("statusBar")->findChildren<QLabel*>())
            if (label->text().startsWith(prefix))
                return label;
        throw std::runtime_error("no such counter");
    }

private:
    void TestBody() override {}
};

inline int value(const QLabel* counter)
{
    return counter->text().section(' ', 1).toInt();
}

// The main function of a soak program. Its argument says how much to do.
template <typename Program> int soak_main(int argc, char** argv, int usual_amount)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules("default.warning=false"); // the platform's, at each dialog
    setvbuf(stdout, nullptr, _IOLBF, 0);
    QApplication application(argc, argv);
    QPixmapCache::setCacheLimit(1024); // KB, else file dialogs fill it with 10 MB of icons
    try {
        Program program;
        program.run(argc > 1 ? atoi(argv[1]) : usual_amount);
        return program.faults == 0 ? 0 : 1;
    } catch (const std::exception& failure) {
        std::printf("FAULT: %s\n", failure.what());
        return 1;
    }
}
