#include "cli/capturedfile.h"

#include "stack/typedtext.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::int64_t NS_IN_SECOND = 1'000'000'000;
constexpr std::int64_t NS_IN_MS = 1'000'000;
constexpr std::uint64_t NOTES_MAX = 10; // of damage; `verify` has all

struct EventName
{
    CaptureEvent event;
    const char* name;
};

constexpr EventName EVENTS[] = {
    {CaptureEvent::StatusChange, "status"},
    {CaptureEvent::DataSent, "sent"},
    {CaptureEvent::DataReceived, "received"},
    {CaptureEvent::DataLost, "lost"},
    {CaptureEvent::FramingError, "framing error"},
    {CaptureEvent::ParityError, "parity error"},
    {CaptureEvent::Break, "break"},
    {CaptureEvent::Overflow, "overflow"},
};

constexpr struct
{
    CaptureLine line;
    const char* name;
} LINES[] = {{CAPTURE_DTR, "DTR"}, {CAPTURE_RTS, "RTS"}, {CAPTURE_CTS, "CTS"},
             {CAPTURE_DSR, "DSR"}, {CAPTURE_DCD, "DCD"}, {CAPTURE_RING, "RING"}};

QString line_names(std::uint8_t lines)
{
    QStringList names;
    for (const auto& row : LINES)
        if (lines & row.line)
            names.append(row.name);
    return names.isEmpty() ? QString("-") : names.join(' ');
}

QString event_text(const CaptureRecord& record)
{
    if (record.event == CaptureEvent::StatusChange)
        return "* " + line_names(record.lines);
    if (record.event == CaptureEvent::DataLost)
        return "! " + counted(record.lost, "byte") + " lost";
    QString text = "! " + event_name(record.event);
    return record.bytes.isEmpty() ? text : text + ' ' + shown(record.bytes);
}

} // namespace

QList<QCommandLineOption> selection_options()
{
    return {
        {"from",
         "Leave out what is earlier: a local time, as in 2026-11-25T03:45:48.165, or "
         "seconds since the first record, as in 12.5.",
         "time"},
        {"to", "Leave out what is later.", "time"},
        {"records", "Take these records, as in 100-200 or 100-.", "numbers"},
        {"port", "Take the records of this port, by its name or what follows a slash of it.",
         "name"},
        {"direction", "Take what was sent, received, or all.", "direction", "all"},
    };
}

QList<QCommandLineOption> frame_options()
{
    return {
        {"frame",
         "Take the payload out of these framers: none, crc16, rtu:ADDRESS, ... joined by +.",
         "framers"},
        {"gap", "A silence that ends a frame.", "ms", "20"},
    };
}

void open_capture(QFile& file)
{
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{ExitCode::File,
                      "the capture " + file.fileName() + " can't be read: " + file.errorString(),
                      "Check the name and the rights of the file."};
    if (file.isSequential())
        throw Failure{ExitCode::File, "the capture " + file.fileName() + " is no file on a disk",
                      "Copy it into a file, and name that."};
}

Failure no_capture(const QString& name)
{
    return {ExitCode::File, name + " is no capture: it has no pcapng section",
            "`editcap` makes pcapng of other captures; serial ones have link type 250."};
}

CapturedFile::CapturedFile(const Invocation& invocation, const QString& name)
    : invocation(invocation)
    , name(name)
    , file(name)
    , reader((open_capture(file), file))
    , from(moment(invocation, "from"))
    , to(moment(invocation, "to"))
{
    read_record_range();
    const QString direction = invocation.text("direction");
    if (direction != "all" && direction != "sent" && direction != "received")
        throw usage_failure("--direction " + direction + ": one of sent, received, all is needed");
}

std::optional<CapturedFile::Moment> CapturedFile::moment(const Invocation& invocation,
                                                         const char* option)
{
    if (!invocation.has(option))
        return std::nullopt;
    const QString text = invocation.text(option);
    bool seconds = false;
    const double since_start = text.toDouble(&seconds);
    if (seconds && std::abs(since_start) < 1e9)
        return Moment{std::int64_t(std::llround(since_start * double(NS_IN_SECOND))), true};
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        throw usage_failure(
            QStringLiteral("--%1 %2 is no time").arg(option, text),
            "Give a time as in 2026-11-25T03:45:48.165, or seconds since the first record.");
    constexpr std::int64_t MS_MAX = std::numeric_limits<std::int64_t>::max() / NS_IN_MS;
    return Moment{std::clamp<std::int64_t>(time.toMSecsSinceEpoch(), 0, MS_MAX) * NS_IN_MS, false};
}

void CapturedFile::read_record_range()
{
    if (!invocation.has("records"))
        return;
    const QString text = invocation.text("records");
    const QStringList ends = text.split('-');
    const auto number = [&](const QString& end) {
        const auto value = number_in(end, 1, std::numeric_limits<std::int64_t>::max());
        if (!value || ends.size() > 2)
            throw usage_failure("--records " + text + " is no range",
                                "Records are counted from 1: 100-200, 100-, or 100.");
        return std::uint64_t(*value);
    };
    first_number = number(ends[0]);
    if (ends.size() == 1)
        last_number = first_number;
    else if (!ends[1].isEmpty())
        last_number = number(ends[1]);
    if (last_number < first_number)
        throw usage_failure("--records " + text + " ends ahead of its start");
}

std::optional<NumberedRecord> CapturedFile::next()
{
    while (count < last_number) {
        invocation.interrupts.check();
        const bool described = !reader.ports().isEmpty();
        switch (reader.next()) {
        case CaptureReader::Found::Section:
            is_capture = true;
            if (on_section)
                on_section(reader.section());
            break;
        case CaptureReader::Found::Port:
            see_port(reader.ports().last().name);
            if (on_port)
                on_port(reader.ports().last());
            break;
        case CaptureReader::Found::Damage:
            note_damage();
            // The header of a section was damaged.
            if (on_section && described && reader.ports().isEmpty())
                on_section(reader.section());
            break;
        case CaptureReader::Found::End:
            check_content();
            return std::nullopt;
        case CaptureReader::Found::Record: {
            const CaptureRecord& record = reader.record();
            see_port(reader.ports()[int(record.port)].name); // its description may be damaged
            if (++count == 1)
                start_ns = record.time_ns;
            const NumberedRecord read = {count, record, reader.ports()[int(record.port)]};
            if (is_asked_for(read))
                return read;
        }
        }
    }
    return std::nullopt;
}

void CapturedFile::see_port(const QString& port)
{
    if (!seen_ports.contains(port))
        seen_ports.append(port);
}

// The device's file by its whole path or what follows a slash of it.
bool CapturedFile::is_asked_port(const QString& port) const
{
    const QString asked = invocation.text("port");
    return !invocation.has("port") || port == asked || port.endsWith('/' + asked);
}

// Nothing to show would look like a port on which nothing happened.
void CapturedFile::check_content() const
{
    if (!is_capture && seen_ports.isEmpty())
        throw no_capture(name);
    const bool asked = std::any_of(seen_ports.cbegin(), seen_ports.cend(),
                                   [&](const QString& port) { return is_asked_port(port); });
    if (!asked && invocation.has("port"))
        throw usage_failure(name + " has no port " + invocation.text("port"),
                            seen_ports.isEmpty()
                                ? "It holds none at all."
                                : "It has " + one_line(seen_ports.join(", ")) + '.');
}

bool CapturedFile::is_asked_for(const NumberedRecord& read) const
{
    const std::int64_t time_ns = read.record.time_ns;
    const auto since = [&](const Moment& moment) {
        return moment.from_start ? time_ns - start_ns : time_ns;
    };
    if (read.number < first_number || (from && since(*from) < from->ns) ||
        (to && since(*to) > to->ns))
        return false;
    if (!is_asked_port(read.port.name))
        return false;
    const QString direction = invocation.text("direction");
    return direction == "all" || direction == direction_name(read.record.direction);
}

void CapturedFile::note_damage()
{
    const CaptureDamage& damage = reader.damage();
    if (damage_count++ < NOTES_MAX)
        invocation.console.note(QStringLiteral("%1: damaged at byte %2, %3: %4")
                                    .arg(name, QString::number(damage.offset),
                                         counted(std::uint64_t(damage.length), "byte"),
                                         damage.reason));
    if (damage_count == NOTES_MAX)
        invocation.console.note("`tarnwickctl capture verify` lists what else is damaged.");
}

QString one_line(const QString& text)
{
    QString line = text;
    return line.replace('\r', "\\r").replace('\n', "\\n");
}

QString counted(std::uint64_t count, const QString& what)
{
    return QString::number(count) + ' ' + what + (count == 1 ? "" : "s");
}

QString time_text(std::int64_t ns)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(ns / NS_IN_MS);
    return time.toString("yyyy-MM-ddTHH:mm:ss.zzz") +
           QStringLiteral("%1").arg(ns % NS_IN_MS / 1000, 3, 10, QChar('0'));
}

QString direction_name(CaptureDirection direction)
{
    const char* const names[] = {"", "received", "sent"};
    return names[int(direction)];
}

QString event_name(CaptureEvent event)
{
    for (const EventName& row : EVENTS)
        if (row.event == event)
            return row.name;
    return QStringLiteral("event %1").arg(int(event));
}

QString record_text(const CaptureRecord& record)
{
    QString text;
    if (record.event == CaptureEvent::DataSent)
        text = "> " + shown_both(record.bytes);
    else if (record.event == CaptureEvent::DataReceived)
        text = "< " + shown_both(record.bytes);
    else
        text = event_text(record);
    return record.comment.isEmpty() ? text : text + "  # " + one_line(record.comment);
}

QJsonObject record_json(const NumberedRecord& read)
{
    const CaptureRecord& record = read.record;
    QJsonObject object{
        {"record", qint64(read.number)},
        {"time_ns", QString::number(record.time_ns)}, // a number of JSON is too short
        {"port", read.port.name},
        {"event", event_name(record.event)},
        {"direction", direction_name(record.direction)},
        {"lines", line_names(record.lines)},
        {"hex", shown(record.bytes)},
    };
    if (record.lost != 0)
        object["lost"] = qint64(record.lost);
    if (!record.comment.isEmpty())
        object["comment"] = record.comment;
    return object;
}
