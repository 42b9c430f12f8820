// One search for devices, on the thread of its link.
#pragma once

#include "stack/cnetsearch.h"
#include "workbench/linktask.h"

// A cnet device has a place and an answer, a Dorv module what it reported of itself.
struct FoundDevice
{
    int channel = 0;
    int rate = 0;
    QByteArray answer;
    QString report;

    bool operator==(const FoundDevice& other) const
    {
        return channel == other.channel && rate == other.rate && answer == other.answer &&
               report == other.report;
    }
};

struct SearchReport
{
    bool cnet = true;
    CnetOutcome outcome = CnetOutcome::NoLink;
    LinkProblem link = {LinkTrouble::ConnectionLost, {}}; // how the link looked at the end
};

// Its signals come on the thread that it belongs to.
class SearchRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool running() const { return task.running(); }
    // Only while none is running, on an open link, which outlives it.
    void cnet_start(LinkWorker& link, const CnetSearchSettings& settings);
    // Listens for that time.
    void dorv_start(LinkWorker& link, int duration_ms);
    void abort() { task.abort(); }

signals:
    // So many pairs, or milliseconds.
    void begun(int total);
    void advanced(int done);
    void pair_begun(int channel, int rate);
    void device_found(const FoundDevice& device);
    void ended(const SearchReport& report);

private:
    SearchReport cnet_search(Stack& stack, const CnetSearchSettings& settings);
    SearchReport dorv_search(Stack& stack, int duration_ms);
    void cnet_connect(CnetCfg& cfg, Stack& stack);
    template <typename Work> void start(LinkWorker& link, bool cnet, const Work& work);

    LinkTask task;
};
