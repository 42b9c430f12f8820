#include "cli/exchangelog.h"

#include "cli/failure.h"
#include "stack/exchangetext.h"

#include <QDateTime>

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
    write(sent_text(bytes, result));
}

void ExchangeLog::received(const QByteArray& bytes, int result)
{
    write(received_text(bytes, result));
}

void ExchangeLog::note(const QString& text)
{
    write(note_text(text));
}

void ExchangeLog::write(const QString& text)
{
    if (!verbose && !file.isOpen())
        return;
    const std::lock_guard<std::mutex> lock(mutex);
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
