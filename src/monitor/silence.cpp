#include "monitor/silence.h"

QVector<Chunk> SilenceCut::feed(const Chunk& chunk)
{
    QVector<Chunk> frames;
    const bool turned = chunk.direction != open.direction;
    if (!open.bytes.isEmpty() && (turned || chunk.time_ns - last_ns > gap_ns))
        frames.append(*finish());
    if (chunk.whole) {
        if (const auto before = finish())
            frames.append(*before);
        frames.append(chunk);
        return frames;
    }
    if (open.bytes.isEmpty()) {
        open.time_ns = chunk.time_ns;
        open.direction = chunk.direction;
    }
    open.bytes += chunk.bytes;
    last_ns = chunk.time_ns;
    while (open.bytes.size() >= FRAME_MAX) {
        Chunk full = open;
        full.bytes.truncate(FRAME_MAX);
        frames.append(full);
        open.bytes.remove(0, FRAME_MAX);
        open.time_ns = chunk.time_ns;
    }
    return frames;
}

std::optional<Chunk> SilenceCut::expire(std::int64_t now_ns)
{
    return now_ns - last_ns > gap_ns ? finish() : std::nullopt;
}

std::optional<std::int64_t> SilenceCut::deadline() const
{
    if (open.bytes.isEmpty())
        return std::nullopt;
    return last_ns + gap_ns + 1;
}

std::optional<Chunk> SilenceCut::finish()
{
    if (open.bytes.isEmpty())
        return std::nullopt;
    Chunk frame = open;
    open.bytes.clear();
    return frame;
}
