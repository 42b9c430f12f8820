// Frames by silence: bytes with less than a gap between them belong together.
#pragma once

#include "monitor/chunk.h"

#include <QVector>
#include <optional>

class SilenceCut
{
public:
    // A stream that never pauses is cut after so many bytes.
    static constexpr int FRAME_MAX = 4096;

    explicit SilenceCut(std::int64_t gap_ns)
        : gap_ns(gap_ns)
    {
    }

    // The frames that end with these bytes, or before them. The time of a frame is that of its
    // first bytes.
    QVector<Chunk> feed(const Chunk& chunk);
    // The frame that has ended by now, if there is one. Feed what was read before first.
    std::optional<Chunk> expire(std::int64_t now_ns);
    // When that will be; none while no frame is open.
    std::optional<std::int64_t> deadline() const;
    // Whatever is open.
    std::optional<Chunk> finish();

private:
    std::int64_t gap_ns;
    Chunk open;
    std::int64_t last_ns = 0; // of its last bytes
};
