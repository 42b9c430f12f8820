#include "workbench/exchangerun.h"

#include <QDateTime>
#include <QElapsedTimer>

namespace {
// Follows what passes the link during one exchange.
class WireTap final : public ExchangeSink
{
public:
    explicit WireTap(ExchangeRecord& record)
        : record(record)
    {
        clock.start();
    }

    void sent(const QByteArray& bytes, int result) override
    {
        if (record.wire.isEmpty())
            clock.start();
        if (result > 0)
            record.wire.append({true, bytes.left(result), now_ms()});
        sent_ms = now_ms();
        begun_ms = -1;
    }
    void received(const QByteArray& bytes, int) override
    {
        if (!bytes.isEmpty())
            record.wire.append({false, bytes, begun_ms < 0 ? now_ms() : begun_ms});
        if (!bytes.isEmpty() && awaiting && record.wait_ms < 0)
            record.wait_ms = record.wire.last().at_ms - sent_ms;
        begun_ms = -1;
    }
    void note(const QString&) override {}

    // The first byte of a read has come.
    void read_begun() { begun_ms = now_ms(); }
    // What comes now belongs to the reply, and no more to the sending of the request.
    void reply_await() { awaiting = true; }

private:
    double now_ms() const { return double(clock.nsecsElapsed()) / 1e6; }

    ExchangeRecord& record;
    QElapsedTimer clock;
    double sent_ms = 0;
    double begun_ms = -1;
    bool awaiting = false;
};

bool is_stream(LinkKind kind)
{
    return kind == LinkKind::Serial || kind == LinkKind::Tcp || kind == LinkKind::RawTcp;
}

// What no reply means: the link's fault, silence, or bytes that are no frame.
ExchangeEnding ending_without(const Stack& stack)
{
    switch (stack.trouble().kind) {
    case LinkTrouble::NoAnswer:
        return ExchangeEnding::NoAnswer;
    case LinkTrouble::BadAnswer:
        return ExchangeEnding::BadAnswer;
    default:
        return ExchangeEnding::Lost;
    }
}

ExchangeEnding exchange(Stack& stack, ExchangeRecord& record, WireTap& tap)
{
    const QByteArray& payload = record.request.payload;
    stack.top().flush();
    const int written = stack.top().write(payload.constData(), int(payload.size()));
    if (written <= 0)
        return stack.lost() ? ExchangeEnding::Lost : ExchangeEnding::NotSent;
    tap.reply_await();
    QByteArray reply(record.request.most, '\0');
    const int count = stack.top().read(reply.data(), int(reply.size()));
    if (count <= 0)
        return ending_without(stack);
    record.reply = reply.left(count);
    return ExchangeEnding::Answered;
}

void run(Stack& stack, ExchangeRecord& record)
{
    WireTap tap(record);
    if (is_stream(record.request.stack.link.kind))
        stack.link().tap_set(&tap, [&tap] { tap.read_begun(); });
    else
        stack.link().tap_set(&tap);
    record.ending = exchange(stack, record, tap);
    record.link = stack.trouble();
    stack.link().tap_set(nullptr);
}
} // namespace

void ExchangeRun::start(LinkWorker& link, const ExchangeRequest& request)
{
    const auto record = std::make_shared<ExchangeRecord>();
    record->request = request;
    record->time_ms = QDateTime::currentMSecsSinceEpoch();
    task.start(
        link,
        [this, record](Stack* stack) {
            if (task.aborted())
                record->ending = ExchangeEnding::Stopped;
            else if (stack)
                run(*stack, *record);
        },
        [this, record] { emit ended(*record); });
}
