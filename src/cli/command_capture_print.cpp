// tarnwickctl capture print and export: the records of a capture as lines, and its bytes.
#include "cli/capturedframes.h"
#include "stack/typedtext.h"

namespace {

QString print_line(const CapturedFile& capture, const NumberedRecord& read)
{
    const QString port = capture.several_ports() ? one_line(read.port.name) + ' ' : QString();
    return time_text(read.record.time_ns) + ' ' + port + record_text(read.record);
}

void print_frame(Invocation& invocation, const CapturedFile& capture, const CapturedFrames& frames,
                 const NumberedRecord& frame)
{
    QString line = print_line(capture, frame);
    QJsonObject object = record_json(frame);
    if (frames.framed() && !frame.record.bytes.isEmpty()) {
        const FrameVerdict verdict = frames.check(frame);
        line += "  | " + verdict.text;
        if (verdict.good)
            line += ": " + shown_both(verdict.payload);
        object["good"] = verdict.good;
        object["verdict"] = verdict.text;
        object["payload"] = shown(verdict.payload);
    }
    invocation.console.line(line);
    invocation.console.result(object);
}

void run_print(Invocation& invocation)
{
    invocation.expect_at_most(1);
    CapturedFile capture(invocation, invocation.argument(0, "FILE"));
    if (invocation.has("frame") || invocation.has("gap")) {
        CapturedFrames frames(invocation, capture);
        while (const auto frame = frames.next())
            print_frame(invocation, capture, frames, *frame);
        return;
    }
    while (const auto read = capture.next()) {
        invocation.console.line(print_line(capture, *read));
        invocation.console.result(record_json(*read));
    }
}

QString csv_field(const QString& text)
{
    return '"' + QString(text).replace('"', "\"\"") + '"';
}

void export_csv(Invocation& invocation, CapturedFile& capture)
{
    invocation.console.line("record,time_ns,time,port,event,direction,hex,lost,comment");
    while (const auto read = capture.next()) {
        const CaptureRecord& record = read->record;
        const QStringList fields = {
            QString::number(read->number),
            QString::number(record.time_ns),
            time_text(record.time_ns),
            csv_field(one_line(read->port.name)),
            event_name(record.event),
            direction_name(record.direction),
            QString::fromLatin1(record.bytes.toHex()),
            QString::number(record.lost),
            csv_field(one_line(record.comment)),
        };
        invocation.console.line(fields.join(','));
    }
}

void export_raw(Invocation& invocation, CapturedFile& capture)
{
    while (const auto read = capture.next())
        invocation.console.bytes(read->record.bytes);
}

// The bytes at the end that begin a character of UTF-8 and don't end it.
int begun_character(const QByteArray& bytes)
{
    constexpr int LONGEST = 4;
    for (int size = 1; size < LONGEST && size <= bytes.size(); ++size) {
        const auto byte = std::uint8_t(bytes[int(bytes.size()) - size]);
        if (byte < 0x80)
            return 0;
        if (byte < 0xC0)
            continue; // in the middle of one
        const int length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
        return length > size ? size : 0;
    }
    return 0;
}

// As text, whole across records, and nothing in it that a terminal obeys.
void export_text(Invocation& invocation, CapturedFile& capture)
{
    QByteArray rest;
    while (const auto read = capture.next()) {
        QByteArray bytes = rest + read->record.bytes;
        // A line feed may follow a carriage return, and bytes a character that has begun.
        const int begun = bytes.endsWith('\r') ? 1 : begun_character(bytes);
        rest = bytes.right(begun);
        bytes.chop(begun);
        bytes.replace("\r\n", "\n");
        invocation.console.bytes(harmless(QString::fromUtf8(bytes)).toLocal8Bit());
    }
    invocation.console.bytes(harmless(QString::fromUtf8(rest)).toLocal8Bit());
}

struct Format
{
    const char* name;
    void (*write)(Invocation&, CapturedFile&);
};

constexpr Format FORMATS[] = {{"raw", export_raw}, {"csv", export_csv}, {"text", export_text}};

void run_export(Invocation& invocation)
{
    invocation.expect_at_most(1);
    const QString name = invocation.argument(0, "FILE");
    for (const Format& format : FORMATS) {
        if (invocation.text("as") != format.name)
            continue;
        CapturedFile capture(invocation, name);
        return format.write(invocation, capture);
    }
    throw usage_failure("--as " + invocation.text("as") + ": one of raw, csv, text is needed");
}

} // namespace

QList<Command> capture_print_commands()
{
    QList<QCommandLineOption> export_options = selection_options();
    export_options.append(QCommandLineOption("as", "raw, csv or text.", "form", "raw"));
    return {
        {"capture print", "FILE", "Print the records or frames of a capture.",
         "Prints a line a record: its time, > for sent or < for received, and its bytes. * is the\n"
         "state of the lines, ! an error, and # starts a comment. With --frame or --gap, a line a\n"
         "frame, with what the framers say of it and its payload. With --json, an object a "
         "line.\n\n"
         "  tarnwickctl capture print session.pcapng --frame crc16\n"
         "  tarnwickctl capture print session.pcapng --from 12.5 --to 14 --direction received",
         selection_options() + frame_options(), Needs::Nothing, run_print},
        {"capture export", "FILE", "Write the bytes of a capture, or a table.",
         "Writes what was recorded to standard output: the bytes alone, a table, or text with\n"
         "control characters made visible.\n\n"
         "  tarnwickctl capture export session.pcapng --direction received > answer.bin\n"
         "  tarnwickctl capture export session.pcapng --as csv > session.csv",
         export_options, Needs::Nothing, run_export},
    };
}
