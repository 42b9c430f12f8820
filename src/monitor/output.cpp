#include "monitor/output.h"

#include "capture/capturerecord.h"

#include <QDateTime>
#include <algorithm>
#include <cstdio>

namespace {
const QByteArray ERASE_LINE = "\r\x1b[K";

QByteArray move(int count, char where)
{
    return count > 0 ? "\x1b[" + QByteArray::number(count) + where : QByteArray();
}

// Takes an escape sequence from the text; the cells by which it moves the cursor.
int take_sequence(const QString& text, int& at)
{
    const int begin = at + 2; // after ESC [
    for (at = begin; at < text.size() && !text[at].isLetter();)
        ++at;
    const QChar last = at < text.size() ? text[at] : QChar();
    const int count = std::max(1, text.mid(begin, at - begin).toInt());
    return last == 'C' ? count : last == 'D' ? -count : 0;
}

// The cell of a row in which the cursor is after the character.
int cell_after(char32_t code, int cell, int width)
{
    constexpr int TAB = 8;
    if (code == '\b')
        return std::max(0, cell - 1);
    if (code == '\t')
        return std::min((cell / TAB + 1) * TAB, width - 1);
    return cell + cells_of(QString::fromUcs4(&code, 1));
}
} // namespace

Output::Output(Screen& screen, const ViewOptions& options, std::unique_ptr<LogFile> log)
    : screen(screen)
    , shown(options)
    , log(std::move(log))
{
}

void Output::note(const QString& line)
{
    if (screen.is_terminal() || shown.options().json) {
        shown.note(line, capture_time_ns(), text);
        return;
    }
    std::fprintf(stderr, "[%s]\n", line.toLocal8Bit().constData());
    log_text();
    if (log)
        write_log(shown.stamp(capture_time_ns()) + '[' + line.toUtf8() + "]\n");
}

void Output::help(const QString& lines)
{
    shown.finish(text);
    if (!shown.at_line_start())
        text += '\n';
    text += lines.toUtf8();
    shown.screen_cleared();
}

void Output::clear_screen()
{
    flush();
    screen.write("\x1b[H\x1b[2J");
    shown.screen_cleared();
    drawn = false;
    redraw = true;
    used = column = 0;
}

void Output::show_line(const QString& new_label, const LineEdit& edit)
{
    label = new_label;
    typed = edit.text();
    cursor = edit.cursor();
    wanted = true;
    redraw = true;
}

void Output::hide_line()
{
    redraw = drawn;
    wanted = false;
}

bool Output::flush()
{
    if (text.isEmpty() && !redraw)
        return true;
    log_text();
    logged = 0; // as all of the text goes from here
    if (screen_left) {
        text.clear();
        return true;
    }
    if (!wanted && !drawn) {
        const bool good = screen.write(text);
        text.clear();
        used = column = 0;
        return good;
    }
    QByteArray out;
    remove_line(out);
    out += text;
    count_cells(text);
    text.clear();
    if (wanted)
        draw_line(out);
    redraw = false;
    return screen.write(out);
}

bool Output::finish()
{
    hide_line();
    shown.finish(text);
    if (!shown.at_line_start() && screen.is_terminal())
        text += '\n';
    const bool good = flush();
    if (log)
        log->flush();
    return good;
}

QString Output::log_fault() const
{
    if (!log || log->missing() == 0)
        return {};
    return QStringLiteral("%1 bytes are missing in the log %2: %3")
        .arg(log->missing())
        .arg(log->name(), log->fault());
}

void Output::log_text()
{
    write_log(text.mid(logged));
    logged = int(text.size());
}

void Output::write_log(const QByteArray& bytes)
{
    if (!log || bytes.isEmpty())
        return;
    const bool good = log->write(bytes, QDateTime::currentDateTime());
    // Once, not for each line; the session goes on.
    if (!good && !log_failing)
        std::fprintf(stderr, "\r[the log %s can't be written: %s; is its disk full?]\r\n",
                     log->name().toLocal8Bit().constData(), log->fault().toLocal8Bit().constData());
    else if (good && log_failing)
        std::fprintf(stderr, "\r[the log %s is written again]\r\n",
                     log->name().toLocal8Bit().constData());
    log_failing = !good;
}

// The text above may have ended inside a line; it goes on there. A line that fills its row goes on
// in the next one, which is where the line below was.
void Output::remove_line(QByteArray& out)
{
    if (!drawn)
        return;
    out += ERASE_LINE;
    const int width = screen.width();
    const bool row_is_full = column == used && used % width == 0;
    if (used > 0 && !row_is_full)
        out += move(1, 'A') + '\r' + move(column % width, 'C');
    drawn = false;
}

void Output::draw_line(QByteArray& out)
{
    if (used > 0)
        out += '\n';
    const int room = std::max(8, screen.width() - cells_of(label) - 1);
    // A long line shows the part that ends with the cursor.
    const int from = std::max(0, cursor - room);
    const QString part = typed.mid(from, room);
    out +=
        ERASE_LINE + label.toUtf8() + part.toUtf8() + move(cells_of(part.mid(cursor - from)), 'D');
    drawn = true;
}

void Output::count_cells(const QByteArray& bytes)
{
    const QByteArray line = bytes.mid(int(bytes.lastIndexOf('\n')) + 1);
    if (line.size() < bytes.size())
        used = column = 0;
    const int width = screen.width();
    const QString text = QString::fromUtf8(line);
    for (int at = 0; at < text.size(); ++at) {
        // The row that the cursor is in; a full one until something follows.
        const int row = column > 0 ? (column - 1) / width * width : 0;
        if (text[at] == '\r') {
            column = row;
        } else if (text[at] == '\x1b') {
            const int cells = take_sequence(text, at);
            column = std::clamp(column + cells, row, std::max(column, row + width - 1));
        } else {
            const bool pair = text[at].isHighSurrogate() && at + 1 < text.size();
            const char32_t code =
                pair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
            column = row + cell_after(code, column - row, width);
            at += pair ? 1 : 0;
        }
        used = std::max(used, column);
    }
}
