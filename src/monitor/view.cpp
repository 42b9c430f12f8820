#include "monitor/view.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
std::int64_t gap_of(const ViewOptions& options)
{
    return options.gap_ns > 0 ? options.gap_ns : View::DEFAULT_GAP_NS;
}

// A JSON string, with its quotation marks. It is harmless on a terminal too.
QByteArray quoted(const QString& text)
{
    QString list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    for (int at = 0; at < list.size(); ++at) {
        const ushort code = list[at].unicode();
        if (is_harmful(code))
            list.replace(at, 1, QStringLiteral("\\u%1").arg(code, 4, 16, QChar('0')));
    }
    return list.mid(1, list.size() - 2).toUtf8();
}
} // namespace

QByteArray json_line(const Chunk& frame)
{
    return QByteArray("{\"direction\":\"") + (frame.direction == Direction::In ? "in" : "out") +
           "\",\"time_ns\":" + QByteArray::number(qlonglong(frame.time_ns)) + ",\"hex\":\"" +
           frame.bytes.toHex(' ') + "\",\"text\":" +
           quoted(QString::fromUtf8(frame.bytes.constData(), int(frame.bytes.size()))) +
           (frame.damaged ? ",\"valid\":false}" : "}");
}

QByteArray json_event(const QString& text, std::int64_t time_ns)
{
    return "{\"event\":" + quoted(text) + ",\"time_ns\":" + QByteArray::number(qlonglong(time_ns)) +
           '}';
}

View::View(const ViewOptions& options)
    : shown(options)
    , text(options.raw)
    , cut(gap_of(options))
{
}

void View::change(const ViewOptions& options, QByteArray& out)
{
    finish(out);
    shown = options;
    cut = SilenceCut(gap_of(options));
}

void View::add(const Chunk& chunk, QByteArray& out)
{
    if (chunk.direction == Direction::Out && !shown.echo && !shown.json)
        return;
    if (!by_frames()) {
        add_text(chunk, out);
        return;
    }
    for (const Chunk& frame : cut.feed(chunk))
        show_frame(frame, out);
}

void View::note(const QString& note, std::int64_t time_ns, QByteArray& out)
{
    finish(out);
    end_line(out);
    if (shown.json)
        out += json_event(note, time_ns) + '\n';
    else
        out += stamp(time_ns) + "[" + note.toUtf8() + "]\n";
}

void View::expire(std::int64_t now_ns, QByteArray& out)
{
    if (const auto frame = cut.expire(now_ns))
        show_frame(*frame, out);
    if (text.holds_back() && now_ns - last_ns >= HOLD_NS)
        finish_text(out);
}

std::optional<std::int64_t> View::deadline() const
{
    if (text.holds_back())
        return last_ns + HOLD_NS;
    return cut.deadline();
}

void View::finish(QByteArray& out)
{
    if (const auto frame = cut.finish())
        show_frame(*frame, out);
    finish_text(out);
    if (text.coloured() && !shown.raw && !shown.json)
        out += "\x1b[m";
}

// Lines are stamped, or frames; else the text flows as it comes.
void View::add_text(const Chunk& chunk, QByteArray& out)
{
    const bool framed = shown.gap_ns > 0 || chunk.whole;
    const bool turned = chunk.direction != last_direction;
    const bool parted = chunk.whole || chunk.time_ns - last_ns > shown.gap_ns;
    if ((framed && parted) || (turned && (framed || shown.stamps != StampKind::Off))) {
        finish_text(out);
        end_line(out);
    }
    last_direction = chunk.direction;
    last_ns = chunk.time_ns;
    if (chunk.damaged) {
        out += stamp(chunk.time_ns) + "[bad frame: " + chunk.bytes.toHex(' ') + "]\n";
        return;
    }
    if (shown.stamps != StampKind::Off) {
        add_lines(chunk, out);
        return;
    }
    const int before = int(out.size());
    text.feed(chunk.bytes, out);
    if (out.size() > before)
        line_start = out.endsWith('\n');
    end_frame(chunk, out);
}

// Of what was held back, the line is no longer empty.
void View::finish_text(QByteArray& out)
{
    line_start = line_start && !text.holds_back();
    text.finish(out);
}

void View::end_frame(const Chunk& chunk, QByteArray& out)
{
    if (!chunk.whole)
        return;
    finish_text(out);
    end_line(out);
}

void View::add_lines(const Chunk& chunk, QByteArray& out)
{
    for (int at = 0; at < chunk.bytes.size();) {
        const int feed = int(chunk.bytes.indexOf('\n', at));
        const int end = feed < 0 ? int(chunk.bytes.size()) : feed + 1;
        if (line_start)
            out += stamp(chunk.time_ns);
        text.feed(chunk.bytes.mid(at, end - at), out);
        line_start = feed >= 0;
        at = end;
    }
    end_frame(chunk, out);
}

void View::show_frame(const Chunk& frame, QByteArray& out)
{
    if (shown.json)
        out += json_line(frame) + '\n';
    else
        show_rows(frame, out);
    line_start = true;
}

void View::show_rows(const Chunk& frame, QByteArray& out)
{
    end_line(out);
    QByteArray head = stamp(frame.time_ns);
    if (frame.damaged)
        head += "bad ";
    if (shown.echo)
        head += frame.direction == Direction::In ? "< " : "> ";
    for (int at = 0; at < frame.bytes.size(); at += HEX_ROW_BYTES) {
        const QByteArray row = hex_row(frame.bytes.mid(at, HEX_ROW_BYTES));
        out += head + row + '\n';
        head.fill(' ');
    }
}

void View::end_line(QByteArray& out)
{
    if (!line_start)
        out += '\n';
    line_start = true;
}

QByteArray View::stamp(std::int64_t time_ns)
{
    QByteArray text = stamp_text(shown.stamps, time_ns, last_stamp);
    if (!text.isEmpty())
        last_stamp = time_ns;
    return text;
}
