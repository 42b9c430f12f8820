#include "stack/progress.h"

#include <algorithm>

namespace {
constexpr std::int64_t TOO_EARLY_MS = 200; // a pace measured over less says nothing
} // namespace

int Progress::percent() const
{
    return total > 0 ? int(std::clamp<std::int64_t>(done * 100 / total, 0, 100)) : 0;
}

bool Progress::has_pace() const
{
    return done > 0 && elapsed_ms >= TOO_EARLY_MS;
}

QString Progress::rate_text() const
{
    const double bytes_per_second = double(done) * 1000 / double(elapsed_ms);
    if (bytes_per_second < 1000)
        return QStringLiteral("%1 B/s").arg(std::int64_t(bytes_per_second));
    if (bytes_per_second < 1e6)
        return QStringLiteral("%1 KB/s").arg(bytes_per_second / 1e3, 0, 'f', 1);
    return QStringLiteral("%1 MB/s").arg(bytes_per_second / 1e6, 0, 'f', 1);
}

std::int64_t Progress::seconds_left() const
{
    if (!has_pace() || done >= total)
        return -1;
    return (elapsed_ms * (total - done) / done + 999) / 1000;
}

QString duration_text(std::int64_t seconds)
{
    const QString tail = QStringLiteral("%1").arg(seconds % 60, 2, 10, QChar('0'));
    const std::int64_t minutes = seconds / 60;
    if (minutes < 60)
        return QStringLiteral("%1:%2").arg(minutes).arg(tail);
    return QStringLiteral("%1:%2:%3")
        .arg(minutes / 60)
        .arg(minutes % 60, 2, 10, QChar('0'))
        .arg(tail);
}
