#include "devices/capturedport.h"

#include <QStringList>
#include <algorithm>
#include <stdexcept>

namespace {
constexpr int NOTES_MAX = 10; // of damage
// Records of two threads may be out of order by less; more is a clock that was set back.
constexpr std::chrono::nanoseconds OUT_OF_ORDER = std::chrono::seconds(1);
// Captures by others name no port.
const char NAMELESS[] = "nameless";

[[noreturn]] void fail(const QString& text)
{
    throw std::runtime_error(text.toStdString());
}
} // namespace

CapturedPort::CapturedPort(const QString& name, const QString& port, const Journal& notes)
    : file(name)
{
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("the capture %1 can't be read: %2; check its name and rights")
                 .arg(name, file.errorString()));
    if (file.isSequential())
        fail(QStringLiteral("the capture %1 is no file on a disk; copy it into one").arg(name));
    read_amounts(notes);
    choose(port);
    reader = std::make_unique<CaptureReader>(file);
}

void CapturedPort::read_amounts(const Journal& notes)
{
    reader = std::make_unique<CaptureReader>(file);
    QStringList damages;
    int damaged = 0;
    bool is_capture = false;
    for (auto found = reader->next(); found != CaptureReader::Found::End; found = reader->next()) {
        is_capture |= found != CaptureReader::Found::Damage;
        if (found == CaptureReader::Found::Damage && ++damaged <= NOTES_MAX)
            damages += QStringLiteral("%1 is damaged at byte %2, %3 bytes: %4")
                           .arg(file.fileName(), QString::number(reader->damage().offset),
                                QString::number(reader->damage().length), reader->damage().reason);
        if (found == CaptureReader::Found::Record)
            count(reader->record());
    }
    if (!is_capture)
        fail(QStringLiteral("%1 is no capture: it has no pcapng section; `tarnwickctl monitor "
                            "--record` makes captures")
                 .arg(file.fileName()));
    if (damaged > 0)
        damages += QStringLiteral("what is good is played; `tarnwickctl capture verify` lists all "
                                  "%1 damaged places")
                       .arg(damaged);
    for (const QString& damage : qAsConst(damages))
        notes(damage);
}

void CapturedPort::count(const CaptureRecord& record)
{
    const QString name = name_of(record.port);
    auto row = std::find_if(amounts.begin(), amounts.end(),
                            [&](const CapturedAmount& known) { return known.port == name; });
    if (row == amounts.end())
        row = amounts.insert(amounts.end(), {name, 0, 0});
    if (record.event == CaptureEvent::DataSent)
        row->sent += record.bytes.size();
    if (record.event == CaptureEvent::DataReceived)
        row->received += record.bytes.size();
}

void CapturedPort::choose(const QString& port)
{
    QStringList names;
    int fitting = 0;
    bool exact = false;
    for (const CapturedAmount& row : qAsConst(amounts)) {
        if (row.sent + row.received == 0)
            continue;
        names += row.port;
        if (exact || !row.port.endsWith(port))
            continue;
        exact = row.port == port;
        fitting = exact ? 1 : fitting + 1;
        chosen = row;
    }
    if (names.isEmpty())
        fail(QStringLiteral("%1 holds no bytes of a serial port").arg(file.fileName()));
    if (fitting == 1)
        return;
    const QString what = fitting == 0 ? "no port \"" + port + '"' : QString("several such ports");
    fail(QStringLiteral("%1 has %2; choose one with --port: %3")
             .arg(file.fileName(), what, names.join(", ")));
}

std::optional<CapturedPiece> CapturedPort::next()
{
    while (!ended && (waiting.empty() || latest - waiting.front().time < OUT_OF_ORDER))
        read_block();
    if (waiting.empty())
        return std::nullopt;
    CapturedPiece piece = std::move(waiting.front());
    waiting.pop_front();
    return piece;
}

void CapturedPort::read_block()
{
    switch (reader->next()) {
    case CaptureReader::Found::End:
        ended = true;
        break;
    case CaptureReader::Found::Damage:
        // After a torn end nothing can lack what was in it.
        if (reader->damage().kind == CaptureDamage::Kind::Block)
            add(CapturedPiece::Kind::Missing, latest, {});
        break;
    case CaptureReader::Found::Record:
        if (name_of(reader->record().port) == chosen.port)
            add(reader->record());
        break;
    default:
        break;
    }
}

void CapturedPort::add(const CaptureRecord& record)
{
    const std::chrono::nanoseconds time = time_of(record.time_ns);
    switch (record.event) {
    case CaptureEvent::DataSent:
        return add(CapturedPiece::Kind::Sent, time, record.bytes);
    case CaptureEvent::DataReceived:
        return add(CapturedPiece::Kind::Received, time, record.bytes);
    case CaptureEvent::DataLost:
    case CaptureEvent::Overflow:
        return add(CapturedPiece::Kind::Missing, time, {});
    default:
        return;
    }
}

void CapturedPort::add(CapturedPiece::Kind kind, std::chrono::nanoseconds time,
                       const QByteArray& bytes)
{
    const auto earlier = [](std::chrono::nanoseconds time, const CapturedPiece& piece) {
        return time < piece.time;
    };
    waiting.insert(std::upper_bound(waiting.begin(), waiting.end(), time, earlier),
                   {kind, time, bytes});
}

std::chrono::nanoseconds CapturedPort::time_of(std::int64_t time_ns)
{
    time_ns = std::clamp<std::int64_t>(time_ns, 0, CapturedPiece::MOST_TIME.count());
    const std::chrono::nanoseconds step(time_ns - latest_ns.value_or(time_ns));
    if (latest_ns && -OUT_OF_ORDER <= step && step.count() <= 0)
        return std::max(latest + step, std::chrono::nanoseconds(0));
    latest_ns = time_ns;
    if (step.count() > 0)
        latest = std::min(latest + step, CapturedPiece::MOST_TIME);
    return latest;
}

QString CapturedPort::name_of(std::uint32_t port) const
{
    const QString& name = reader->ports()[int(port)].name;
    return name.isEmpty() ? QString(NAMELESS) : name;
}
