#include "terminal/fileprogress.h"

#include "terminal/filesend.h"

#include <QFontMetrics>

namespace {

QString percentage(int value, int maximum)
{
    return QString("%1%").arg(value * 100 / maximum);
}

} // namespace

QSize FileProgress::sizeHint() const
{
    return {width_for(FileSend::longest_progress_text()), QProgressBar::sizeHint().height()};
}

QSize FileProgress::minimumSizeHint() const
{
    return {width_for(percentage(1, 1)), QProgressBar::minimumSizeHint().height()};
}

QString FileProgress::text() const
{
    const QString whole = QProgressBar::text();
    return width_for(whole) <= width() ? whole : percentage(value(), maximum());
}

int FileProgress::width_for(const QString& text) const
{
    const int edges = fontMetrics().averageCharWidth() * 2; // the frame, and a little air
    return fontMetrics().horizontalAdvance(text) + edges;
}
