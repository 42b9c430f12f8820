#include "workbench/transfer.h"

#include <algorithm>

namespace {
constexpr std::int64_t TOO_EARLY_MS = 200; // a pace measured over less says nothing

QString rate_text(double bytes_per_second)
{
    if (bytes_per_second < 1000)
        return QStringLiteral("%1 B/s").arg(std::int64_t(bytes_per_second));
    if (bytes_per_second < 1e6)
        return QStringLiteral("%1 KB/s").arg(bytes_per_second / 1e3, 0, 'f', 1);
    return QStringLiteral("%1 MB/s").arg(bytes_per_second / 1e6, 0, 'f', 1);
}

QString duration_text(std::int64_t seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0'));
}
} // namespace

int Transfer::percent() const
{
    return total > 0 ? int(std::clamp<std::int64_t>(done * 100 / total, 0, 100)) : 0;
}

std::int64_t Transfer::seconds_left() const
{
    if (stopped || done <= 0 || done >= total || elapsed_ms < TOO_EARLY_MS)
        return -1;
    return (elapsed_ms * (total - done) / done + 999) / 1000;
}

QString Transfer::text() const
{
    if (total == 0)
        return {};
    QString text = tr("%1 of %2 bytes").arg(done).arg(total);
    if (done > 0 && elapsed_ms >= TOO_EARLY_MS)
        text += ", " + rate_text(double(done) * 1000 / double(elapsed_ms));
    if (seconds_left() >= 0)
        text += ", " + tr("%1 left").arg(duration_text(seconds_left()));
    return text;
}
