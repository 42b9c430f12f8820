// How far a long job is, as one line of text.
#pragma once

#include <QString>

// "0:09", "12:34", "1:02:03".
QString duration_text(qint64 seconds);
// "850 B/s", "10.9 KB/s", "1.2 MB/s".
QString rate_text(double bytes_per_second);

struct Progress
{
    qint64 done = 0;
    qint64 total = 0;
    qint64 elapsed_ms = 0;

    int percent() const;
    // Time that the rest takes at the pace so far; -1 while there is no pace to tell.
    qint64 remaining_seconds() const;
};

// "[=====     ]  50 %  131072 of 262144 bytes  10.9 KB/s  0:12 left"
QString transfer_text(const Progress& progress);
// " 50 %  33 of 66 pairs  0:12 left", with room for more behind it
QString count_text(const Progress& progress, const QString& unit);
