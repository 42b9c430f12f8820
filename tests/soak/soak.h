// The frame of the soak programs: a window on a pseudo-terminal, a count of what went wrong, and
// the figures of the process.
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
    double resident_mb = file_content("/proc/self/statm").split(' ').at(1).toDouble() *
                         double(sysconf(_SC_PAGESIZE)) / 1e6;
    int descriptors = entries("/proc/self/fd");
    int threads = entries("/proc/self/task");

private:
    static int entries(const char* folder)
    {
        return int(QDir(folder).entryList(QDir::AllEntries | QDir::System).size());
    }
};

class Soak : public WindowTest
{
public:
    int faults = 0;

protected:
    void expect(bool good, const QString& what)
    {
        faults += !good;
        if (!good)
            std::printf("FAULT: %s\n", qPrintable(what));
    }
    // What the status bar counts under "RX: ", "TX: " or "CNT: ".
    int counted(const char* what) const
    {
        return counters().section(what, 1).section(' ', 0, 0).toInt();
    }

private:
    void TestBody() override {}
};

// The main function of a soak program, whose argument says how much to do.
template <typename Program> int soak_main(int argc, char** argv, int usual_amount)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules("default.warning=false"); // the platform's, at each dialog
    setvbuf(stdout, nullptr, _IOLBF, 0);
    const QApplication application(argc, argv);
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
