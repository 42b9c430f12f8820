// One upgrade of one module, on the thread of its link.
#pragma once

#include "stack/upgrade.h"
#include "workbench/linktask.h"

#include <QObject>

// Its signals come on the thread that it belongs to. At its end it aborts a run and waits for it.
class UpgradeRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool running() const { return job.running(); }
    // Only while none is running, on an open link, which outlives it.
    void start(LinkWorker& link, const QString& file, const UpgradeSettings& settings);
    void abort() { job.abort(); }

signals:
    void device_found(LoaderDevice device);
    void phase_begun(LoaderPhase phase);
    void begun(int file_size);
    void page_state(quint32 offset, LoaderPage state);
    void progress(int file_size, int offset);
    void ended(UpgradeReport report);

private:
    void work(Stack& stack, const QString& file, const UpgradeSettings& settings);
    void connect_signals(Loader& loader);

    UpgradeReport report; // of the last run
    LinkTask job;         // goes first, as its work uses the rest
};
