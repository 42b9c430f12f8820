// How far a long job is, as one line of text.
#pragma once

#include <QString>
#include <cstdint>

// "0:09", "12:34", "1:02:03".
QString duration_text(std::int64_t seconds);
// "850 B/s", "10.9 KB/s", "1.2 MB/s".
QString rate_text(double bytes_per_second);

struct Progress
{
    std::int64_t done = 0;
    std::int64_t total = 0;
    std::int64_t elapsed_ms = 0;

    int percent() const;
    // Time that the rest takes at the pace so far; -1 while there is no pace yet.
    std::int64_t remaining_seconds() const;
};

// "[=====     ]  50 %  131072 of 262144 bytes  10.9 KB/s  0:12 left"
QString transfer_text(const Progress& progress);
// " 50 %  33 of 66 pairs  0:12 left", with room for more after it
QString count_text(const Progress& progress, const QString& unit);
