// A link that passes everything to another one and tells a log of each exchange.
#pragma once

#include "cli/exchangelog.h"
#include "links/qlink.h"

#include <atomic>

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

    qint64 bytes_sent() const { return sent; }
    // What the last read behind the last write gave; not while another thread drives the link.
    const QByteArray& last_received() const { return last; }
    // A read, readline or write gave an error, so the link itself is in trouble.
    bool failed() const { return error != 0; }

private:
    int note_received(const char* buffer, int result);

    QLink& lower;
    ExchangeLog& log;
    std::atomic<qint64> sent{0};
    std::atomic<int> error{0};
    QByteArray last;
};
