// How the receive area is selected from: by character, word or paragraph, past its edges, by drag.
#include "terminal/receivearea.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QtMath>
#include <algorithm>

namespace {

constexpr int SCROLL_STEP_MS = 50;      // how often a drag past the edge scrolls
constexpr int LONGEST_WORD = 64 * 1024; // so that a double click in an unbroken stream answers

enum class Kind { Word, Separator, Blank };

// As Qt separates words.
Kind kind_of(QChar c)
{
    if (c.isSpace())
        return Kind::Blank;
    return QStringLiteral(".,?!@#$:;-<>[](){}=/+%&^*'\"`~|\\").contains(c) ? Kind::Separator
                                                                           : Kind::Word;
}

} // namespace

int ReceiveArea::position_at(const QPoint& point) const
{
    const RowTable& table = rows();
    const int below_top = qFloor((point.y() - margin) / row_height);
    const int row =
        std::min(std::max(0, verticalScrollBar()->value() + below_top), table.row_count() - 1);
    const qreal wanted = (point.x() - margin) / cell_width;
    const int end = table.row_end(row);
    const bool goes_on = row + 1 < table.row_count() && table.row_start(row + 1) == end;
    int column = 0;
    int last_before =
        table.row_start(row); // of the row's last character, with what is joined to it
    for (int at = table.row_start(row); at < end;) {
        const int next_column = column_after(table.cell(at), column, table.columns());
        if (wanted < (column + next_column) / 2.0)
            return at;
        last_before = at;
        do
            ++at;
        while (at < end && table.cell(at) == Cell::Joined);
        column = next_column;
    }
    // The position after a row that goes on is the next row's first one, so it would be shown
    // there.
    return goes_on && wanted < column ? last_before : end;
}

QTextCursor ReceiveArea::cursorForPosition(const QPoint& point) const
{
    return cursor_at(position_at(point));
}

QRect ReceiveArea::cursorRect(const QTextCursor& cursor) const
{
    const RowTable& table = rows();
    const int row = table.row_of(cursor.position());
    const qreal x = margin + table.column_of(row, cursor.position()) * cell_width;
    const qreal y = margin + (row - verticalScrollBar()->value()) * row_height;
    return QRectF(x, y, cursorWidth(), row_height).toRect();
}

ReceiveArea::Span ReceiveArea::span_at(int position, Unit wanted) const
{
    const QTextBlock block = document()->findBlock(position);
    const int begin = block.position();
    const int end = begin + block.length() - 1;
    if (wanted == Unit::Paragraph)
        return {begin, block.next().isValid() ? end + 1 : end};
    Span span = {position, position};
    if (wanted == Unit::Character)
        return span;
    const auto kind_at = [this](int at) { return kind_of(document()->characterAt(at)); };
    // After a word and in the blanks that follow it, the word is meant.
    int on = position;
    if (on == end && on > begin && kind_at(on - 1) == Kind::Word)
        --on;
    while (on > begin && on < end && kind_at(on) == Kind::Blank)
        --on;
    const Kind kind = on < end ? kind_at(on) : Kind::Blank;
    if (kind == Kind::Blank)
        return span;
    span = {on, on};
    const int first = std::max(begin, position - LONGEST_WORD);
    const int last = std::min(end, position + LONGEST_WORD);
    while (span.from > first && kind_at(span.from - 1) == kind)
        --span.from;
    while (span.to < last && kind_at(span.to) == kind)
        ++span.to;
    return span;
}

bool ReceiveArea::selects(Qt::MouseButtons buttons) const
{
    return (buttons & Qt::LeftButton) && (textInteractionFlags() & Qt::TextSelectableByMouse);
}

void ReceiveArea::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(selects(event->button()));
    if (!event->isAccepted())
        return;
    const int position = position_at(event->pos());
    const QTextCursor cursor = textCursor();
    const bool third_click =
        since_double_click.isValid() &&
        since_double_click.elapsed() < QApplication::doubleClickInterval() &&
        (event->pos() - press_point).manhattanLength() < QApplication::startDragDistance();
    since_double_click.invalidate();
    press_point = event->pos();
    unit = third_click ? Unit::Paragraph : Unit::Character;
    may_drag = !third_click && cursor.hasSelection() && position > cursor.selectionStart() &&
               position < cursor.selectionEnd() && !(event->modifiers() & Qt::ShiftModifier);
    if (may_drag)
        return;
    if (event->modifiers() & Qt::ShiftModifier) {
        pressed = {cursor.anchor(), cursor.anchor()};
        extend_selection(event->pos());
        return;
    }
    pressed = span_at(position, unit);
    select(pressed.from, pressed.to);
}

void ReceiveArea::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->setAccepted(selects(event->button()));
    if (!event->isAccepted())
        return;
    press_point = event->pos();
    since_double_click.start();
    unit = Unit::Word;
    may_drag = false;
    pressed = span_at(position_at(event->pos()), unit);
    select(pressed.from, pressed.to);
}

void ReceiveArea::mouseMoveEvent(QMouseEvent* event)
{
    if (!selects(event->buttons()))
        return;
    if (may_drag) {
        if ((event->pos() - press_point).manhattanLength() >= QApplication::startDragDistance())
            start_drag();
        return;
    }
    drag_point = event->pos();
    extend_selection(drag_point);
    if (viewport()->rect().contains(event->pos()))
        scroll_timer.stop();
    else if (!scroll_timer.isActive())
        scroll_timer.start(SCROLL_STEP_MS, this);
}

void ReceiveArea::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    scroll_timer.stop();
    if (may_drag) { // a click on the selection that didn't become a drag
        may_drag = false;
        const int position = position_at(event->pos());
        select(position, position);
    }
    offer_selection();
}

void ReceiveArea::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != scroll_timer.timerId()) {
        NoLayoutEdit::timerEvent(event);
        return;
    }
    const int past =
        drag_point.y() < 0 ? drag_point.y() : std::max(0, drag_point.y() - viewport()->height());
    const int rows = qRound(past / row_height); // the farther out, the faster
    verticalScrollBar()->setValue(verticalScrollBar()->value() + rows +
                                  (past > 0   ? 1
                                   : past < 0 ? -1
                                              : 0));
    extend_selection(drag_point);
}

void ReceiveArea::extend_selection(const QPoint& point)
{
    const Span here = span_at(position_at(point), unit);
    if (here.from < pressed.from)
        select(pressed.to, here.from);
    else
        select(pressed.from, std::max(here.to, pressed.to));
}

void ReceiveArea::offer_selection() const
{
    QClipboard* const clipboard = QApplication::clipboard();
    if (clipboard->supportsSelection() && textCursor().hasSelection())
        clipboard->setMimeData(createMimeDataFromSelection(), QClipboard::Selection);
}

void ReceiveArea::start_drag()
{
    may_drag = false;
    auto* drag = new QDrag(this);
    drag->setMimeData(createMimeDataFromSelection());
    drag->exec(Qt::CopyAction);
}
