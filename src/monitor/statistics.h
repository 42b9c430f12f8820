// What a session has moved.
#pragma once

#include "monitor/chunk.h"

#include <QString>

struct Statistics
{
    std::int64_t begun_ns = 0;
    std::int64_t received = 0; // bytes
    std::int64_t sent = 0;
    std::int64_t reads = 0;
    std::int64_t bad_frames = 0;
    std::int64_t losses = 0; // times that the port went away
    std::int64_t last_received_ns = 0;

    void count(const Chunk& chunk);
    // "received 1200 bytes in 14 reads (120 B/s), sent 12 bytes, 10.0 s, ..."
    QString text(std::int64_t now_ns) const;
};
