// The upgrade of one module on a thread of its own, with its link.
#pragma once

#include "cli/failure.h"
#include "cli/progress.h"
#include "stack/stack.h"
#include "stack/upgrade.h"

#include <QElapsedTimer>
#include <QThread>
#include <atomic>
#include <functional>
#include <optional>

class Interrupts;

// Called on the thread of the upgrade.
struct UpgradeWatch
{
    std::function<void(const QString&)> note;
    std::function<void(const Progress&)> progress; // while pages are sent
};

class ModuleUpgrade : public QThread
{
    Q_OBJECT

public:
    // `log` outlives it.
    ModuleUpgrade(const StackDescription& description, const QString& file,
                  const UpgradeSettings& settings, ExchangeSink& log, UpgradeWatch watch);
    // Aborts the run and waits for it.
    ~ModuleUpgrade() override;

    void abort() { upgrade.abort(); }

    // Waits for the end of the thread, which comes before what follows.
    void join();
    // Nothing when the module holds the file and has said so.
    const std::optional<Failure>& failure() const { return why; }
    const UpgradeReport& report() const { return last; }
    const QString& soft_info() const { return device; }   // of the device as it was found
    const QString& hard_info() const { return hardware; } // in hexadecimal

protected:
    void run() override;

private:
    friend void run_all(const QVector<ModuleUpgrade*>& modules, const Interrupts& interrupts);

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
    std::optional<Failure> why;
    UpgradeReport last;
    QString device;
    QString hardware;
    // Orders what the thread did before what its owner does next. The end of a QThread does so
    // too, but race detectors don't see that.
    std::atomic<bool> given_back{false};
};

// Runs all at the same time, in an event loop until the last one has ended. An interrupt aborts
// them.
void run_all(const QVector<ModuleUpgrade*>& modules, const Interrupts& interrupts);
