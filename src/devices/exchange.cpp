#include "devices/exchange.h"

#include <QString>
#include <algorithm>

namespace {
constexpr int LIMIT = 131072; // far more than any request has

// Real modules take a few bytes' time of silence for the end of a frame. A host that shares its
// processor with others may pause for longer in the middle of a write, so there is a lower bound.
std::chrono::nanoseconds pause_within_request(int baud, std::chrono::nanoseconds shortest)
{
    using namespace std::chrono;
    constexpr int BITS = 4 * 10;
    return baud > 0 ? std::max(shortest, BITS * nanoseconds(seconds(1)) / baud) : shortest;
}
} // namespace

Exchange::Exchange(std::unique_ptr<Module> module, const ExchangeSettings& settings,
                   const FaultSettings& faults, Journal journal)
    : module(std::move(module))
    , settings(settings)
    , faults(faults)
    , journal(std::move(journal))
    , longest_pause(pause_within_request(settings.baud, settings.pause))
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

void Exchange::handle(const QByteArray& request, Time now)
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
    const QByteArrayList arriving = carry(request, overtaken_request);
    for (const QByteArray& frame : arriving)
        answer(frame, now);
}

void Exchange::answer(const QByteArray& request, Time now)
{
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

// What is late holds up what comes after it.
void Exchange::queue_reply(const QByteArray& bytes, Time due)
{
    tell(">", bytes);
    if (!faults.count_frame())
        return tell("lost");
    in_turn = std::max(due, in_turn);
    const QByteArrayList leaving = carry(bytes, overtaken_reply);
    for (int i = 0; i < leaving.size(); ++i)
        put_out(leaving[i],
                in_turn + (i == 0 ? std::chrono::milliseconds(0) : faults.next_delay()));
}

// A second copy and an overtaken frame have a delay of their own: later replies may pass them.
void Exchange::put_out(const QByteArray& frame, Time due)
{
    const auto later = [](Time time, const Portion& portion) { return time < portion.due; };
    outgoing.insert(std::upper_bound(outgoing.begin(), outgoing.end(), due, later), {due, frame});
}

// What arrives of a frame, and after it the one that it overtakes.
QByteArrayList Exchange::carry(QByteArray frame, QByteArray& overtaken)
{
    QByteArrayList arriving;
    const QByteArray sent = frame;
    if (!faults.pass_frame(frame)) {
        tell("lost");
    } else {
        if (frame != sent)
            tell("changed to", frame);
        if (overtaken.isEmpty() && faults.reorders()) {
            tell("to arrive after the next one");
            overtaken = frame;
            return {};
        }
        arriving += frame;
        if (faults.doubles()) {
            tell("arrives twice");
            arriving += frame;
        }
    }
    if (!overtaken.isEmpty())
        arriving += std::exchange(overtaken, {});
    return arriving;
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
    return take_due(outgoing, most, now);
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
    overtaken_request.clear();
    overtaken_reply.clear();
    settings.reboot_after = -1;
    settings.cut_after = -1;
}

void Exchange::tell(const char* what, const QByteArray& frame) const
{
    if (journal)
        journal(
            QString::fromLatin1(what + (frame.isEmpty() ? QByteArray() : ' ' + frame.toHex(' '))));
}
