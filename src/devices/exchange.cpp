#include "exchange.h"

#include <QString>
#include <algorithm>

namespace {
constexpr int LIMIT = 131072; // far more than any request has

// Real modules take a few bytes' time of silence for the end of a frame. A host that shares its
// processor with others may pause for longer in the middle of a write, so there is a lower bound.
std::chrono::nanoseconds pause_within_request(int baud)
{
    using namespace std::chrono;
    constexpr int BITS = 4 * 10;
    const nanoseconds shortest = milliseconds(5);
    return baud > 0 ? std::max(shortest, BITS * nanoseconds(seconds(1)) / baud) : shortest;
}
} // namespace

Exchange::Exchange(std::unique_ptr<Module> module, const ExchangeSettings& settings,
                   const FaultSettings& faults, Journal journal)
    : module(std::move(module))
    , settings(settings)
    , faults(faults)
    , journal(std::move(journal))
    , longest_pause(pause_within_request(settings.baud))
{
}

int Exchange::room() const
{
    return LIMIT - int(heard.size());
}

void Exchange::receive(const QByteArray& bytes, Time now)
{
    if (now < deaf_until)
        return;
    heard += bytes;
    last_heard = now;
    silence_told = false;
    if (room() == 0)
        hear_requests(now, true);
}

void Exchange::line_idle(Time now)
{
    const bool silence = now >= last_heard + longest_pause;
    if (!silence_told)
        hear_requests(now, silence);
    silence_told = silence;
}

void Exchange::hear_requests(Time now, bool silence)
{
    while (const int size = heard.isEmpty() ? 0 : module->request_size(heard, silence)) {
        const QByteArray request = heard.left(size);
        heard.remove(0, size);
        handle(request, now);
    }
}

void Exchange::handle(QByteArray request, Time now)
{
    ++requests;
    tell("<", request);
    if (requests == settings.cut_after) {
        tell("the line is cut");
        outgoing.clear();
        heard.clear();
        cut_due = true;
        return;
    }
    if (requests == settings.reboot_after) {
        tell("the supply fails");
        outgoing.clear();
        restart(now);
        return;
    }
    const QByteArray sent = request;
    if (!faults.pass_frame(request))
        return tell("lost");
    if (request != sent)
        tell("changed to", request);
    const Answer answer = module->answer(request);
    send(answer.replies, now);
    if (answer.resets)
        restart(now);
}

void Exchange::send(const std::vector<Reply>& replies, Time now)
{
    if (replies.empty())
        return;
    Time due = now + faults.next_delay();
    for (const Reply& reply : replies) {
        due += reply.after;
        queue_reply(reply.bytes, due);
    }
}

// What is late holds up what comes behind it.
void Exchange::queue_reply(QByteArray bytes, Time due)
{
    tell(">", bytes);
    const QByteArray meant = bytes;
    if (!faults.send_frame(bytes))
        return tell("lost");
    if (bytes != meant)
        tell("changed to", bytes);
    if (!outgoing.empty())
        due = std::max(due, outgoing.back().due);
    outgoing.push_back({due, bytes});
}

void Exchange::restart(Time now)
{
    heard.clear();
    deaf_until = now + settings.start_time;
    module->restart();
}

QByteArray Exchange::transmit(int most, Time now)
{
    if (module->next_report(now) <= now && now >= deaf_until)
        queue_reply(module->report(now), now);
    QByteArray bytes;
    while (!outgoing.empty() && outgoing.front().due <= now && bytes.size() < most) {
        Portion& front = outgoing.front();
        const int count = std::min(most - int(bytes.size()), int(front.bytes.size()));
        bytes += front.bytes.left(count);
        front.bytes.remove(0, count);
        if (front.bytes.isEmpty())
            outgoing.pop_front();
    }
    return bytes;
}

Time Exchange::next_wake(Time now) const
{
    const Time reply = outgoing.empty() ? NEVER : outgoing.front().due;
    const Time pause = heard.isEmpty() || silence_told ? NEVER : last_heard + longest_pause;
    const Time report = module->next_report(now);
    return std::min({reply, pause, report == NEVER ? NEVER : std::max(report, deaf_until)});
}

bool Exchange::wants_cut()
{
    return std::exchange(cut_due, false);
}

void Exchange::end_faults()
{
    faults = Faults({});
    settings.reboot_after = -1;
    settings.cut_after = -1;
}

void Exchange::tell(const char* what, const QByteArray& frame) const
{
    if (journal)
        journal(
            QString::fromLatin1(what + (frame.isEmpty() ? QByteArray() : ' ' + frame.toHex(' '))));
}
