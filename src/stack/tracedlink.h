// A link that passes everything to another one and reports each exchange.
#pragma once

#include "links/qlink.h"
#include "stack/exchangesink.h"

#include <atomic>
#include <cstdint>
#include <functional>

class TracedLink final : public QLink
{
public:
    // `lower` and `log` outlive it.
    TracedLink(QLink& lower, ExchangeSink& log)
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

    // Reports to `other` too, until it is given null. With `begun`, a read takes its first byte
    // alone and calls it then; a link of datagrams would lose the rest. For the thread that drives
    // the link.
    void tap_set(ExchangeSink* other, const std::function<void()>& begun = {})
    {
        tap = other;
        read_begun = begun;
    }

    // From any thread:
    std::int64_t bytes_sent() const { return sent; }
    // The last read after the last write gave nothing.
    bool silent() const { return quiet; }
    // A read, readline or write gave an error, so the link itself is in trouble.
    bool failed() const { return error != 0; }

private:
    void note_sent(const QByteArray& bytes, int result);
    int note_received(const char* buffer, int result);
    int read_in_two(char* buffer, int nbytes);

    QLink& lower;
    ExchangeSink& log;
    ExchangeSink* tap = nullptr;
    std::function<void()> read_begun;
    std::atomic<std::int64_t> sent{0};
    std::atomic<bool> quiet{true};
    std::atomic<int> error{0};
};
