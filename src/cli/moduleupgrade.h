// The upgrade of one module on a thread of its own, with its link.
#pragma once

#include "cli/failure.h"
#include "stack/progress.h"
#include "stack/stack.h"
#include "stack/upgrade.h"

#include <QElapsedTimer>
#include <QObject>
#include <functional>
#include <optional>
#include <thread>

class Interrupts;

// Called on the thread of the upgrade.
struct UpgradeWatch
{
    std::function<void(const QString&)> note;
    std::function<void(const Progress&)> progress; // while pages are sent
};

struct ModuleEnding
{
    std::optional<Failure> failure; // none when the module holds the file and has said so
    UpgradeReport report;
    QString soft_info; // of the device as it was found
    QString hard_info; // in hexadecimal
};

class ModuleUpgrade : public QObject
{
    Q_OBJECT

public:
    // `log` outlives it.
    ModuleUpgrade(const StackDescription& description, const QString& file,
                  const UpgradeSettings& settings, ExchangeSink& log, UpgradeWatch watch);
    // Aborts the run and waits for it.
    ~ModuleUpgrade() override;

    // False when the system refuses a thread, which is then the ending.
    bool start();
    void abort() { upgrade.abort(); }
    // Waits for the end of the run.
    const ModuleEnding& ending();

signals:
    // On the thread of the upgrade, the last thing that it does.
    void finished();

private:
    void run();
    void work();
    void connect_signals(Loader& loader);
    void note_phase(LoaderPhase phase);
    void note_soft_info(const QString& info);

    const StackDescription description;
    const QString file;
    const UpgradeSettings settings;
    ExchangeSink& log;
    const UpgradeWatch watch;
    Upgrade upgrade;
    bool sending = false;
    QElapsedTimer pages_clock;
    ModuleEnding result; // the thread's until it has ended
    std::thread thread;
};

// Runs all at the same time, in an event loop until the last one has ended. An interrupt aborts
// them.
void run_all(const QVector<ModuleUpgrade*>& modules, const Interrupts& interrupts);
