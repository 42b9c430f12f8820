// Every exchange with a device, line by line with its time: on stderr, into a file, or both.
//
//   2026-05-04T10:20:30.123 > 64 00 00 00 00      bytes that went out
//   2026-05-04T10:20:30.131 < 64 00               bytes that came
//   2026-05-04T10:20:30.632 < nothing in time
//   2026-05-04T10:20:30.632 ldr: device reboot    what a layer logs
#pragma once

#include "cli/console.h"
#include "links/qlink.h"

#include <QFile>
#include <atomic>
#include <cstdint>

// Any thread may call it; lines of different threads don't mix.
class ExchangeLog
{
public:
    // Lines go to the console with `verbose`, and after what is already in the file, if one is
    // named. Throws Failure when the file can't be opened.
    ExchangeLog(Console& console, bool verbose, const QString& file);

    void sent(const QByteArray& bytes, int result);
    void received(const QByteArray& bytes, int result);
    void note(const QString& text);

private:
    void write(const QString& text);

    Console& console;
    const bool verbose;
    QMutex mutex;
    QFile file;
};

// A link that passes everything to another one and logs each exchange.
class TracedLink final : public QLink
{
public:
    // `lower` and `log` outlive it.
    TracedLink(QLink& lower, ExchangeLog& log)
        : lower(lower)
        , log(log)
    {
    }

    // Closed after a failure.
    int open() override;
    bool is_open() override { return lower.is_open(); }
    int close() override { return lower.close(); }
    void flush() override { lower.flush(); }
    int bytes_available() override { return lower.bytes_available(); }
    int getchar() override;
    int putchar(int c) override;
    int read(char* buffer, int nbytes) override;
    int write(const char* buffer, int nbytes) override;
    bool can_read_line() override { return lower.can_read_line(); }
    int readline(char* buffer, int size) override;

    // From any thread:
    std::int64_t bytes_sent() const { return sent; }
    // The last read after the last write gave nothing.
    bool silent() const { return quiet; }
    // A read, readline or write gave an error, so the link itself is in trouble.
    bool failed() const { return error != 0; }

private:
    int note_received(const char* buffer, int result);

    QLink& lower;
    ExchangeLog& log;
    std::atomic<std::int64_t> sent{0};
    std::atomic<bool> quiet{true};
    std::atomic<int> error{0};
};
