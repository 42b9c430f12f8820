// Several modules that are upgraded at the same time, as on a production line.
#pragma once

#include "cli/exchangelog.h"
#include "cli/linkrecord.h"
#include "cli/moduleupgrade.h"

#include <memory>
#include <mutex>
#include <vector>

// Who takes what is exchanged and said. All outlive the line.
struct UpgradeOutputs
{
    ExchangeLog& log;
    RecordFile& record;
    Console& console;
};

class UpgradeLine
{
public:
    // A module at each link; the texts are what was typed for them.
    UpgradeLine(const QVector<StackDescription>& links, const QStringList& texts,
                const QString& file, const UpgradeSettings& settings,
                const UpgradeOutputs& outputs);

    // Until the last one has ended. Throws Failure, with the code of the first link whose module
    // doesn't hold the file.
    void run(const Interrupts& interrupts);

private:
    struct Place
    {
        QString text; // of the link
        QString name; // in notes
        std::unique_ptr<ExchangeSink> log;
        std::unique_ptr<LinkRecord> record; // passes on to the log
        std::unique_ptr<ModuleUpgrade> module;
        Progress progress;
    };

    UpgradeWatch watch(Place& place);
    void progress_take(Place& place, const Progress& progress);
    void end_note(const Place& place) const;
    void table_show() const;
    QJsonObject result() const;

    const QString file;
    Console& console;
    std::mutex mutex; // guards the progress of all
    std::vector<std::unique_ptr<Place>> places;
};
