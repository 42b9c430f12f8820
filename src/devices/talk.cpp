#include "devices/talk.h"

#include <algorithm>

namespace {
constexpr int LARGEST_PORTION = 4096;
constexpr double STREAM_PORTIONS_A_SECOND = 50; // often enough to look steady
} // namespace

TalkText::TalkText(const TalkSettings& settings)
    : form(settings.form)
    , line_length(std::max(SHORTEST_LINE, settings.line_length))
    , random(settings.seed)
{
}

QByteArray TalkText::next(int count)
{
    while (ready.size() < count)
        write_more();
    QByteArray bytes = ready.left(count);
    ready.remove(0, count);
    return bytes;
}

void TalkText::write_more()
{
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    switch (form) {
    case TalkForm::Lines: {
        QByteArray line = QByteArray::number(++line_number).rightJustified(8, '0') + ' ';
        while (line.size() < line_length - 2)
            line += char(' ' + 1 + random() % 94);
        ready += line + "\r\n";
        break;
    }
    case TalkForm::Binary:
        ready += char(random() & 0xFF);
        break;
    case TalkForm::Hex: {
        const auto value = random();
        ready += DIGITS[value >> 4 & 0xF];
        ready += DIGITS[value & 0xF];
        ready += ' ';
        break;
    }
    }
}

Talk::Talk(const TalkSettings& settings, const FaultSettings& faults)
    : settings(settings)
    , text(settings)
    , faults(faults)
    , portion_time(0)
{
    const double units = settings.form == TalkForm::Lines
                             ? double(portion()) / std::max(SHORTEST_LINE, settings.line_length)
                             : portion();
    if (settings.rate > 0)
        portion_time = std::chrono::nanoseconds(std::int64_t(units / settings.rate * 1e9));
}

int Talk::portion() const
{
    if (settings.size > 0)
        return settings.size;
    if (settings.form == TalkForm::Lines)
        return std::max(SHORTEST_LINE, settings.line_length);
    if (settings.rate > 0)
        return std::max(1, int(settings.rate / STREAM_PORTIONS_A_SECOND));
    return LARGEST_PORTION;
}

int Talk::room() const
{
    return LARGEST_PORTION;
}

QByteArray Talk::transmit(int most, Time now)
{
    if (started.isEmpty() && next_wake(now) <= now) {
        const qint64 left = settings.bytes < 0 ? portion() : settings.bytes - sent;
        const int count = int(std::min<qint64>(portion(), left));
        started = text.next(count);
        sent += count;
        faults.send_bytes(started);
        // After a time in which nobody read, the pace goes on from now instead of catching up.
        const bool far_behind = now - next_portion > portion_time + std::chrono::milliseconds(100);
        next_portion = (far_behind ? now : next_portion) + portion_time;
    }
    QByteArray bytes = started.left(most);
    started.remove(0, most);
    return bytes;
}

Time Talk::next_wake(Time now) const
{
    if (!started.isEmpty())
        return now;
    if (faults.silent() || (settings.bytes >= 0 && sent >= settings.bytes))
        return NEVER;
    return std::max(now, next_portion);
}
