#include "cli/progress.h"

#include <algorithm>

namespace {
constexpr int BAR_WIDTH = 20;
constexpr std::int64_t TOO_EARLY_MS = 200; // a pace measured over less says nothing

QString bar(int percent)
{
    const int filled = percent * BAR_WIDTH / 100;
    return '[' + QString(filled, '=') + QString(BAR_WIDTH - filled, ' ') + ']';
}

QString head(const Progress& progress, const QString& unit)
{
    return QStringLiteral("%1 %  %2 of %3 %4")
        .arg(progress.percent(), 3)
        .arg(progress.done)
        .arg(progress.total)
        .arg(unit);
}

QString tail(const Progress& progress)
{
    const std::int64_t seconds = progress.remaining_seconds();
    return seconds < 0 || progress.done >= progress.total ? QString()
                                                          : "  " + duration_text(seconds) + " left";
}
} // namespace

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

QString rate_text(double bytes_per_second)
{
    if (bytes_per_second < 1000)
        return QStringLiteral("%1 B/s").arg(std::int64_t(bytes_per_second));
    if (bytes_per_second < 1e6)
        return QStringLiteral("%1 KB/s").arg(bytes_per_second / 1e3, 0, 'f', 1);
    return QStringLiteral("%1 MB/s").arg(bytes_per_second / 1e6, 0, 'f', 1);
}

int Progress::percent() const
{
    return total > 0 ? int(std::clamp<std::int64_t>(done * 100 / total, 0, 100)) : 0;
}

std::int64_t Progress::remaining_seconds() const
{
    if (done <= 0 || elapsed_ms < TOO_EARLY_MS)
        return -1;
    return (elapsed_ms * (total - done) / done + 999) / 1000;
}

QString transfer_text(const Progress& progress)
{
    QString text = bar(progress.percent()) + ' ' + head(progress, "bytes");
    if (progress.remaining_seconds() >= 0)
        text += "  " + rate_text(double(progress.done) * 1000 / double(progress.elapsed_ms));
    return text + tail(progress);
}

QString count_text(const Progress& progress, const QString& unit)
{
    return head(progress, unit) + tail(progress);
}
