// A soak program with a window on a pseudo-terminal, and the figures of its process.
#pragma once

#include "soak.h"
#include "windowtest.h"

#include <QDir>
#include <QLoggingCategory>
#include <QPixmapCache>
#include <unistd.h>

struct ProcessFigures
{
    double resident_mb = file_content("/proc/self/statm").split(' ').at(1).toDouble() *
                         double(sysconf(_SC_PAGESIZE)) / 1e6;
    int descriptors = QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size();
    int threads = QDir("/proc/self/task").entryList().size();
};

class WindowSoak : public Soak, protected WindowTest
{
public:
    WindowSoak()
    {
        QLoggingCategory::setFilterRules("default.warning=false"); // the platform's, at each dialog
        QPixmapCache::setCacheLimit(1024); // KB, else file dialogs fill it with 10 MB of icons
    }

private:
    void TestBody() override {}
};
