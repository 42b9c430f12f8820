#include "monitor/statistics.h"

#include "monitor/stamp.h"

void Statistics::count(const Chunk& chunk)
{
    if (chunk.direction == Direction::Out) {
        sent += chunk.bytes.size();
        return;
    }
    received += chunk.bytes.size();
    ++reads;
    bad_frames += chunk.damaged ? 1 : 0;
    last_received_ns = chunk.time_ns;
}

QString Statistics::text(std::int64_t now_ns) const
{
    const double seconds = double(now_ns - begun_ns) / double(NS_PER_S);
    QString text = QStringLiteral("received %1 bytes in %2 reads (%3 bytes/s), sent %4 bytes, in "
                                  "%5 s")
                       .arg(received)
                       .arg(reads)
                       .arg(seconds > 0 ? double(received) / seconds : 0.0, 0, 'f', 0)
                       .arg(sent)
                       .arg(seconds, 0, 'f', 1);
    if (last_received_ns > 0)
        text += QStringLiteral("; the last came %1 s ago")
                    .arg(double(now_ns - last_received_ns) / double(NS_PER_S), 0, 'f', 1);
    if (bad_frames > 0)
        text += QStringLiteral("; %1 bad frames").arg(bad_frames);
    if (losses > 0)
        text += QStringLiteral("; the port went away %1 times").arg(losses);
    return text;
}
