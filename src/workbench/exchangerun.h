// One exchange, on the thread of its link.
#pragma once

#include "workbench/exchangerecord.h"
#include "workbench/linktask.h"

// Its signal comes on the thread that it belongs to.
class ExchangeRun : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool running() const { return task.running(); }
    // Only while none is running, on an open link, which outlives it.
    void start(LinkWorker& link, const ExchangeRequest& request);
    // Before it is sent; after that it ends with the time-out.
    void abort() { task.abort(); }

signals:
    void ended(const ExchangeRecord& record);

private:
    LinkTask task;
};
