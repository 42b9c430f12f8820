#include "cli/progressline.h"

namespace {
constexpr int BAR_WIDTH = 20;

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
    const std::int64_t seconds = progress.seconds_left();
    return seconds < 0 ? QString() : "  " + duration_text(seconds) + " left";
}
} // namespace

QString transfer_text(const Progress& progress)
{
    const QString rate = progress.has_pace() ? "  " + progress.rate_text() : QString();
    return bar(progress.percent()) + ' ' + head(progress, "bytes") + rate + tail(progress);
}

QString count_text(const Progress& progress, const QString& unit)
{
    return head(progress, unit) + tail(progress);
}
