#include "devices/replay.h"

#include <algorithm>
#include <stdexcept>

namespace {
constexpr int UNHEARD = 4096;
// So long looks like the end, as between two sessions of one file.
constexpr std::chrono::seconds LONG_SILENCE(10);
} // namespace

Replay::Replay(std::unique_ptr<CapturedPort> port, const ReplaySettings& settings,
               const FaultSettings& faults, Journal notes)
    : port(std::move(port))
    , settings(settings)
    , faults(faults)
    , notes(std::move(notes))
{
    if (this->port->amount().received == 0)
        throw std::runtime_error(
            QStringLiteral("in %1 nothing was received from %2, so there is nothing to replay")
                .arg(this->port->file_name(), this->port->amount().port)
                .toStdString());
    read_next();
}

int Replay::room() const
{
    return UNHEARD;
}

QByteArray Replay::transmit(int most, Time now)
{
    if (!start)
        start = now;
    if (started.isEmpty() && piece && *start + due <= now) {
        if (now - (*start + due) > LATE_MOST)
            start = now - due;
        started = piece->bytes;
        faults.send_bytes(started);
        read_next();
        if (!piece)
            notes(QStringLiteral("the end of %1: %2 bytes")
                      .arg(port->file_name(), QString::number(port->amount().received)));
    }
    QByteArray bytes = started.left(most);
    started.remove(0, most);
    return bytes;
}

Time Replay::next_wake(Time now) const
{
    if (!started.isEmpty())
        return now;
    if (!piece || faults.silent())
        return NEVER;
    return start ? *start + due : now;
}

void Replay::read_next()
{
    do
        piece = port->next();
    while (piece && piece->kind != CapturedPiece::Kind::Received);
    if (!piece)
        return;
    const std::chrono::nanoseconds silence = played(piece->time - last_recorded);
    if (silence >= LONG_SILENCE)
        notes(QStringLiteral("a silence of %1 s comes now; --most-silence shortens such")
                  .arg(std::chrono::duration_cast<std::chrono::seconds>(silence).count()));
    due = std::min(due + silence, CapturedPiece::MOST_TIME);
    last_recorded = std::max(last_recorded, piece->time);
}

std::chrono::nanoseconds Replay::played(std::chrono::nanoseconds recorded) const
{
    if (settings.speed <= 0 || recorded.count() <= 0)
        return std::chrono::nanoseconds(0);
    if (settings.most_silence.count() > 0)
        recorded = std::min<std::chrono::nanoseconds>(recorded, settings.most_silence);
    const double ns = double(recorded.count()) / settings.speed;
    return ns < double(CapturedPiece::MOST_TIME.count())
               ? std::chrono::nanoseconds(std::int64_t(ns))
               : CapturedPiece::MOST_TIME;
}
