#include "cli/exchangelog.h"

#include "cli/failure.h"
#include "cli/typedtext.h"

#include <QDateTime>
#include <algorithm>

namespace {
constexpr int SHORTEST_TEXT = 3; // fewer bytes that look like text mostly are none

// In hexadecimal; text, as in AT commands, as text too.
QString both_forms(const QByteArray& bytes)
{
    const bool text = std::all_of(bytes.cbegin(), bytes.cend(), [](char byte) {
        return (byte >= ' ' && byte <= '~') || byte == '\r' || byte == '\n';
    });
    if (!text || bytes.size() < SHORTEST_TEXT)
        return shown(bytes);
    return shown(bytes) + "  \"" +
           QString::fromLatin1(bytes).replace('\r', "\\r").replace('\n', "\\n") + '"';
}
} // namespace

ExchangeLog::ExchangeLog(Console& console, bool verbose, const QString& file)
    : console(console)
    , verbose(verbose)
    , file(file)
{
    if (!file.isEmpty() && !this->file.open(QIODevice::Append | QIODevice::Text))
        throw Failure{ExitCode::File,
                      "the log file " + file + " can't be written: " + this->file.errorString(),
                      "Name another file with --log, or leave the option out."};
}

void ExchangeLog::sent(const QByteArray& bytes, int result)
{
    const bool complete = result == bytes.size();
    write("> " + both_forms(bytes) +
          (complete ? QString() : QStringLiteral("  (result %1)").arg(result)));
}

void ExchangeLog::received(const QByteArray& bytes, int result)
{
    if (result < 0)
        write(QStringLiteral("< error %1").arg(result));
    else
        write(bytes.isEmpty() ? QString("< nothing in time") : "< " + both_forms(bytes));
}

void ExchangeLog::note(const QString& text)
{
    QString one_line = text;
    write(one_line.replace('\r', "\\r").replace('\n', "\\n"));
}

void ExchangeLog::write(const QString& text)
{
    if (!verbose && !file.isOpen())
        return;
    const QMutexLocker lock(&mutex);
    const QString line =
        QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + ' ' + harmless(text);
    if (verbose)
        console.note(line);
    if (!file.isOpen())
        return;
    if (file.write((line + '\n').toUtf8()) < 0 || !file.flush()) {
        console.note("The log file " + file.fileName() + " ends here: " + file.errorString());
        file.close();
    }
}
