#include "cli/console.h"

#include <QJsonDocument>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {
bool is_terminal()
{
#ifdef Q_OS_UNIX
    return isatty(STDERR_FILENO) != 0;
#else
    return false;
#endif
}

// What fits on a line of the terminal, as only what stays on one line can be replaced.
QString cut_to_width(const QString& text)
{
#ifdef Q_OS_UNIX
    winsize size = {};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1)
        return text.left(size.ws_col - 1);
#endif
    return text;
}

void put(std::FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream); // a reader of a pipe sees each line as it comes
}
} // namespace

QString harmless(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control && c != '\n' && c != '\t')
            shown += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QChar('0'));
        else
            shown += c;
    }
    return shown;
}

Console::Console(bool json)
    : json(json)
    , in_place(is_terminal())
{
}

void Console::line(const QString& text)
{
    if (json)
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    clear_progress();
    put(stdout, harmless(text) + '\n');
}

void Console::bytes(const QByteArray& data)
{
    if (json)
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    clear_progress();
    std::fwrite(data.constData(), 1, size_t(data.size()), stdout);
}

void Console::result(const QJsonObject& object)
{
    if (!json)
        return;
    const std::lock_guard<std::mutex> lock(mutex);
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    put(stdout, harmless(QString::fromUtf8(text)) + '\n');
}

void Console::note(const QString& text)
{
    const std::lock_guard<std::mutex> lock(mutex);
    clear_progress();
    write_note(text);
}

void Console::write_note(const QString& text)
{
    put(stderr, harmless(text) + '\n');
}

void Console::progress(const QString& text, int percent)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (in_place) {
        put(stderr, '\r' + cut_to_width(harmless(text)) + "\x1b[K");
        progress_shown = true;
        return;
    }
    const int step = percent / 10;
    if (step != last_step)
        write_note(text);
    last_step = step;
}

void Console::end_progress()
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (progress_shown)
        put(stderr, "\n");
    progress_shown = false;
    last_step = -1;
}

void Console::use_plain_progress()
{
    in_place = false;
}

void Console::clear_progress()
{
    if (progress_shown)
        put(stderr, "\r\x1b[K");
    progress_shown = false;
}

bool Console::flush()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}
