// How far a transfer is: bytes, rate and time left, as a value.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <cstdint>

struct Transfer
{
    Q_DECLARE_TR_FUNCTIONS(Transfer)
public:
    std::int64_t done = 0;
    std::int64_t total = 0;
    std::int64_t elapsed_ms = 0;
    bool stopped = false; // what is left doesn't come

    int percent() const;
    // At the pace so far; -1 while there is no pace yet, or nothing more comes.
    std::int64_t seconds_left() const;
    // "131072 of 262144 bytes, 10.9 KB/s, 0:12 left"
    QString text() const;
};
