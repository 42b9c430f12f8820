// Every exchange with a device, line by line with its time: on stderr, into a file, or both.
//
//   2026-05-04T10:20:30.123 > 64 00 00 00 00      bytes that went out
//   2026-05-04T10:20:30.131 < 64 00               bytes that came
//   2026-05-04T10:20:30.632 < nothing in time
//   2026-05-04T10:20:30.632 ldr: device reboot    what a layer logs
#pragma once

#include "cli/console.h"
#include "stack/exchangesink.h"

#include <QFile>
#include <mutex>

// Lines of different threads don't mix.
class ExchangeLog : public ExchangeSink
{
public:
    // Lines go to the console with `verbose`, and after what is already in the file, if one is
    // named. Throws Failure when the file can't be opened.
    ExchangeLog(Console& console, bool verbose, const QString& file);

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

    // A line, after its time.
    void write(const QString& text);

private:
    Console& console;
    const bool verbose;
    std::mutex mutex;
    QFile file;
};
