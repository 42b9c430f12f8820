// How far a long job is, with its pace and the time left, as a value.
#pragma once

#include <QString>
#include <cstdint>

struct Progress
{
    std::int64_t done = 0;
    std::int64_t total = 0;
    std::int64_t elapsed_ms = 0;

    int percent() const;
    // False while it is too early to say.
    bool has_pace() const;
    // "850 B/s", "10.9 KB/s", "1.2 MB/s"; for a job that counts bytes and has a pace.
    QString rate_text() const;
    // Time that the rest takes at the pace so far; -1 without a pace, or when nothing is left.
    std::int64_t seconds_left() const;
};

// "0:09", "12:34", "1:02:03".
QString duration_text(std::int64_t seconds);
