#include "workbench/frameboxes.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>
#include <numeric>

namespace {
const QByteArray EXAMPLE("\x61\x02\x03", 3);
constexpr int PAD = 7;

QString hex(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex(' ').toUpper());
}
} // namespace

FrameBoxes::FrameBoxes(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    framers_set({});
}

void FrameBoxes::framers_set(const QVector<FramerDescription>& framers)
{
    this->framers = framers;
    parts = frame_parts(framers, EXAMPLE);
    setAccessibleName(tr("example of a frame"));
    setAccessibleDescription(text());
    setToolTip(tr("A payload of three bytes as it goes out, the first byte on the left."));
    updateGeometry();
    update();
}

QString FrameBoxes::title(const FramePart& part) const
{
    return part.framer < 0 ? tr("payload") : framers_text({framers[part.framer]});
}

QString FrameBoxes::text() const
{
    QStringList texts;
    for (const FramePart& part : parts)
        texts += title(part) + " [" + hex(part.bytes) + ']';
    return texts.join(' ');
}

int FrameBoxes::box_width(const FramePart& part) const
{
    const QFontMetrics fixed(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    return 2 * PAD + std::max(fontMetrics().horizontalAdvance(title(part)),
                              fixed.horizontalAdvance(hex(part.bytes)));
}

QSize FrameBoxes::sizeHint() const
{
    const int width =
        std::accumulate(parts.cbegin(), parts.cend(), 1,
                        [this](int sum, const FramePart& part) { return sum + box_width(part); });
    return {width, 2 * fontMetrics().height() + 10};
}

QSize FrameBoxes::minimumSizeHint() const
{
    return {40, sizeHint().height()};
}

void FrameBoxes::paint_box(QPainter& painter, const QRect& box, const FramePart& part) const
{
    const bool payload = part.framer < 0;
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(payload ? QPalette::Highlight : QPalette::AlternateBase));
    painter.drawRect(box.adjusted(0, 0, 0, -1));
    painter.setPen(palette().color(payload ? QPalette::HighlightedText : QPalette::WindowText));
    const int line = fontMetrics().height();
    painter.setFont(font());
    painter.drawText(box.adjusted(0, 3, 0, 0), Qt::AlignHCenter | Qt::AlignTop, title(part));
    painter.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    painter.drawText(box.adjusted(0, line + 3, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                     hex(part.bytes));
}

void FrameBoxes::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int x = 0;
    for (const FramePart& part : parts) {
        const int width = box_width(part);
        paint_box(painter, {x, 0, width, height()}, part);
        x += width;
    }
}

void FrameBoxes::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        framers_set(framers);
    QWidget::changeEvent(event);
}
