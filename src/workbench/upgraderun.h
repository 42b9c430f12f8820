// One upgrade of one module, on the thread of its link.
#pragma once

#include "tools/loader.h"
#include "workbench/linkworker.h"

#include <QObject>
#include <QSemaphore>
#include <mutex>

struct RunSettings
{
    int packet = 1024; // most bytes of the file in one packet; the module may take fewer
    int attempts = 5;  // for each packet and each question
    int interval_ms = 0;
    int reset_wait_ms = 2000;  // a reset and the start of the boot code
    int verify_wait_ms = 1000; // a CRC over the whole flash
};

struct UpgradeReport
{
    LoaderOutcome outcome;
    LinkProblem link = {LinkTrouble::NoAnswer, {}}; // how the link looked at the end
    int file_size = 0;
    std::int64_t elapsed_ms = 0;
    std::int64_t wire_bytes = 0; // that were sent
};

// Its signals come on the thread that it belongs to.
class UpgradeRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    // Aborts a run and waits for it.
    ~UpgradeRun() override;

    bool running() const { return under_way; }
    // Only while none is running, on an open link, which outlives it.
    void start(LinkWorker& link, const QString& file, const RunSettings& settings);
    void abort();

signals:
    void device_found(LoaderDevice device);
    void phase_begun(LoaderPhase phase);
    void begun(int file_size);
    void page_state(quint32 offset, LoaderPage state);
    void progress(int file_size, int offset);
    void ended(UpgradeReport report);

private:
    UpgradeReport work(Stack& stack, const QString& file, const RunSettings& settings);
    void connect_signals(Loader& loader, Stack& stack);

    Mailbox home; // for what comes back from the link's thread
    bool under_way = false;
    std::mutex mutex;         // guards the two below
    Loader* loader = nullptr; // while it runs
    bool abort_asked = false;
    // One for each run that has left the link's thread.
    const std::shared_ptr<QSemaphore> left = std::make_shared<QSemaphore>();
    int runs = 0;
};
Q_DECLARE_METATYPE(UpgradeReport)
