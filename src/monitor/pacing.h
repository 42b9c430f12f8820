// Bytes that wait to be sent, with pauses between characters and after lines.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>

struct Pacing
{
    std::int64_t char_ns = 0; // after each byte
    std::int64_t line_ns = 0; // after each line feed, or carriage return without one

    bool none() const { return char_ns == 0 && line_ns == 0; }
};

class SendQueue
{
public:
    explicit SendQueue(const Pacing& pacing)
        : pacing(pacing)
    {
    }

    void add(const QByteArray& bytes) { waiting += bytes; }
    void clear() { waiting.clear(); }
    int size() const { return int(waiting.size()); }
    // What may go out now; empty while a pause lasts.
    QByteArray ready(std::int64_t now_ns) const;
    // So many of these have gone out.
    void taken(int count, std::int64_t now_ns);
    // When the next may; none when nothing waits.
    std::optional<std::int64_t> due() const;

private:
    bool ends_line(int at) const;

    const Pacing pacing;
    QByteArray waiting;
    std::int64_t not_before = 0;
};
