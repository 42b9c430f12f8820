// Reads or writes the configuration block of a cnet device, on the thread of its link.
#pragma once

#include "tools/cnetcfg.h"
#include "workbench/linktask.h"

// A device on the air.
struct CnetPlace
{
    QByteArray address; // 2 bytes, or 8
    int channel = 0;
    int rate = 0;

    bool operator==(const CnetPlace& other) const
    {
        return address == other.address && channel == other.channel && rate == other.rate;
    }
};

enum class BlockStep { Tune, Write, Read };

struct BlockReport
{
    BlockStep step = BlockStep::Tune; // the last one that was tried
    CnetOutcome outcome = CnetOutcome::NoLink;
    LinkProblem link = {LinkTrouble::ConnectionLost, {}};
    QByteArray block; // as read, CNET_BLOCK_SIZE; empty after a failure
    QByteArray extra; // the bytes that follow it

    bool good() const { return outcome == CnetOutcome::Done; }
};

// Its signals come on the thread that it belongs to.
class CnetBlockRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool running() const { return task.running(); }
    // Only while none is running, on an open link, which outlives it. The local device is tuned
    // first. An empty block only reads; any other is written, and then read back.
    void start(LinkWorker& link, const CnetPlace& place, const QByteArray& block);
    // Between two steps.
    void abort() { task.abort(); }

signals:
    void ended(const BlockReport& report);

private:
    BlockReport work(Stack& stack, const CnetPlace& place, const QByteArray& block);

    LinkTask task;
};
