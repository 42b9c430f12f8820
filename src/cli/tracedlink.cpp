#include "cli/tracedlink.h"

#include "cli/failure.h"
#include "cli/typedtext.h"

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
    const bool complete = result == bytes.size();
    write("> " + shown_both(bytes) +
          (complete ? QString() : QStringLiteral("  (result %1)").arg(result)));
}

void ExchangeLog::received(const QByteArray& bytes, int result)
{
    if (result < 0)
        write(QStringLiteral("< error %1").arg(result));
    else
        write(bytes.isEmpty() ? QString("< nothing in time") : "< " + shown_both(bytes));
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

int TracedLink::open()
{
    const int result = lower.open();
    if (result != 0)
        lower.close(); // one that could not connect may call itself open
    return result;
}

int TracedLink::note_received(const char* buffer, int result)
{
    if (result < 0)
        error = result;
    const QByteArray bytes(buffer, result > 0 ? result : 0);
    quiet = bytes.isEmpty();
    log.received(bytes, result);
    return result;
}

int TracedLink::read(char* buffer, int nbytes)
{
    return note_received(buffer, lower.read(buffer, nbytes));
}

int TracedLink::readline(char* buffer, int size)
{
    return note_received(buffer, lower.readline(buffer, size));
}

int TracedLink::getchar()
{
    const int c = lower.getchar();
    if (c >= 0) {
        const char byte = char(c);
        note_received(&byte, 1);
    }
    return c;
}

int TracedLink::write(const char* buffer, int nbytes)
{
    quiet = true;
    const int result = lower.write(buffer, nbytes);
    if (result > 0)
        sent += result;
    if (result < 0)
        error = result;
    log.sent(QByteArray(buffer, nbytes), result);
    return result;
}

int TracedLink::putchar(int c)
{
    const int result = lower.putchar(c);
    const char byte = char(c);
    if (result == c)
        ++sent;
    log.sent(QByteArray(&byte, 1), result == c ? 1 : result);
    return result;
}
