// What of the receive area is in sight and how large: keys that scroll, the font's size, hits of a
// search.
#include "terminal/receivearea.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QWheelEvent>
#include <algorithm>

namespace {

constexpr int SMALLEST_FONT = 5; // points
constexpr int LARGEST_FONT = 48;
constexpr int WHEEL_STEP = QWheelEvent::DefaultDeltasPerStep;

qreal points_of(const QFont& font)
{
    return font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
}

} // namespace

void ReceiveArea::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        event->accept();
        selectAll();
        offer_selection();
        return;
    }
    // The stock widget knows the rest of the keys that scroll.
    const bool top = event->matches(QKeySequence::MoveToStartOfDocument);
    if (top || event->matches(QKeySequence::MoveToEndOfDocument)) {
        event->accept();
        verticalScrollBar()->triggerAction(top ? QAbstractSlider::SliderToMinimum
                                               : QAbstractSlider::SliderToMaximum);
        return;
    }
    NoLayoutEdit::keyPressEvent(event);
}

// The stock widget sets no bounds and takes parts of a point, each of which wraps all text anew.
void ReceiveArea::wheelEvent(QWheelEvent* event)
{
    if ((event->modifiers() & Qt::ControlModifier) == 0) {
        NoLayoutEdit::wheelEvent(event);
        return;
    }
    event->accept();
    wheel_turn += event->angleDelta().y();
    if (const int steps = wheel_turn / WHEEL_STEP)
        font_resize(steps);
    wheel_turn %= WHEEL_STEP;
}

void ReceiveArea::font_resize(int points)
{
    const int size = qRound(points_of(font())) + points;
    set_font_size(std::min(std::max(size, SMALLEST_FONT), LARGEST_FONT));
}

void ReceiveArea::font_reset()
{
    if (font_size_before > 0)
        set_font_size(font_size_before);
}

void ReceiveArea::set_font_size(qreal points)
{
    QFont resized = font();
    if (font_size_before == 0)
        font_size_before = points_of(resized);
    resized.setPointSizeF(points);
    setFont(resized);
}

void ReceiveArea::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    viewport()->update();
}

QString ReceiveArea::selected_line(int most) const
{
    const QTextCursor cursor = textCursor();
    if (cursor.selectionEnd() - cursor.selectionStart() > most)
        return {};
    const QString text = cursor.selectedText();
    return text.contains(QChar::ParagraphSeparator) ? QString() : text;
}

int ReceiveArea::first_position_in_sight() const
{
    return rows().row_start(verticalScrollBar()->value());
}

void ReceiveArea::show_span(int from, int to)
{
    const int first = rows().row_of(from);
    const int last = rows().row_of(to);
    const int top = verticalScrollBar()->value();
    const int page = visible_rows();
    if (first < top || last >= top + page)
        verticalScrollBar()->setValue(first - page / 3); // with some of what is around it
}

void ReceiveArea::mark_hits(const TextSearch* wanted)
{
    search = wanted;
    current_hit = {-1, -1};
    viewport()->update();
}

void ReceiveArea::mark_current_hit(int from, int to)
{
    if (from == current_hit.from && to == current_hit.to)
        return;
    current_hit = {from, to};
    viewport()->update();
}

void ReceiveArea::reserve_top(int height)
{
    setViewportMargins(0, height, 0, 0);
}
