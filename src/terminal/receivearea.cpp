#include "terminal/receivearea.h"

#include "terminal/framepacer.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QMimeData>
#include <QScrollBar>
#include <QtMath>
#include <algorithm>
#include <climits>

namespace {

// A copied selection beyond this size goes without its colours: the stock copy of a text with its
// formats takes several times its memory.
constexpr int MOST_COPIED_WITH_FORMAT = 1 << 20;

QFont fixed_font()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(font).fixedPitch()) {
        // Not every platform has set one.
        font.setFamily(QStringLiteral("monospace"));
        font.setStyleHint(QFont::Monospace);
    }
    return font;
}

qreal widest_ascii(const QFontMetricsF& metrics)
{
    qreal widest = 0;
    for (char c = ' '; c <= '~'; ++c)
        widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(c)));
    return widest;
}

} // namespace

ReceiveArea::ReceiveArea(QWidget* parent)
    : NoLayoutEdit(parent)
{
    connect(this, &NoLayoutEdit::rows_changed, this, &ReceiveArea::keep_place);
    connect(this, &NoLayoutEdit::cursor_set, this, &ReceiveArea::show_position);
    setFont(fixed_font());
    measure_font();
}

void ReceiveArea::append_chunk(const QString& prefix, const QString& text, int replaced)
{
    move_to_end();
    {
        EndEdit end(*this);
        end.remove(replaced);
        for (const QString* part : {&prefix, &text})
            if (!part->isEmpty())
                end.insert(*part);
    }
    show_end();
}

void ReceiveArea::append_line(const QString& text, const QBrush& foreground)
{
    move_to_end(); // from wherever a click has put the cursor, into a highlighted line perhaps
    const QTextCharFormat format = currentCharFormat();
    QTextCharFormat highlighted = format;
    highlighted.setForeground(foreground);
    {
        EndEdit end(*this);
        end.insert(text, highlighted);
        end.insert(QStringLiteral("\n"), format);
    }
    show_end();
}

void ReceiveArea::show_end()
{
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ReceiveArea::move_to_end()
{
    const int end = rows().length();
    const QTextCursor cursor = textCursor();
    // After a clear the cursor is at the end, but with the format of the text that was there.
    if (cursor.hasSelection() || cursor.position() != end || end == 0)
        select(end, end);
}

QMimeData* ReceiveArea::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    if (cursor.selectionEnd() - cursor.selectionStart() <= MOST_COPIED_WITH_FORMAT)
        return QPlainTextEdit::createMimeDataFromSelection();
    QString text = cursor.selectedText();
    for (QChar& c : text) { // as toPlainText() has it
        if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator)
            c = QLatin1Char('\n');
        else if (c == QChar::Nbsp)
            c = QLatin1Char(' ');
    }
    auto* data = new QMimeData;
    data->setText(text);
    return data;
}

int ReceiveArea::visible_rows() const
{
    return std::max(1, static_cast<int>((viewport()->height() - margin) / row_height));
}

void ReceiveArea::measure_font()
{
    const QFontMetricsF metrics(font());
    cell_width = widest_ascii(metrics);
    row_height = qCeil(metrics.height() + std::max(metrics.leading(), 0.0));
    ascent = metrics.ascent();
    margin = qRound(document()->documentMargin());
    glyphs = QRawFont::fromFont(font());
    fit_to_viewport();
}

void ReceiveArea::fit_to_viewport()
{
    const bool was_at_end = at_end();
    const int top =
        rows().row_start(std::min(verticalScrollBar()->value(), rows().row_count() - 1));
    const qreal width = viewport()->width() - 2 * margin;
    set_columns(std::max(1, static_cast<int>(width / cell_width)));
    set_top_row(was_at_end ? INT_MAX : rows().row_of(top));
    viewport()->update();
}

void ReceiveArea::keep_place()
{
    set_top_row(at_end() ? INT_MAX : verticalScrollBar()->value());
    viewport()->update();
}

void ReceiveArea::set_top_row(int row)
{
    const int page = visible_rows();
    set_scroll_bar(std::max(0, rows().row_count() - page), page, row);
}

bool ReceiveArea::at_end() const
{
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void ReceiveArea::show_position(int position)
{
    const int row = rows().row_of(position);
    const int top = verticalScrollBar()->value();
    const int page = visible_rows();
    if (row < top)
        verticalScrollBar()->setValue(row);
    else if (row >= top + page)
        verticalScrollBar()->setValue(row - page + 1);
}

void ReceiveArea::resizeEvent(QResizeEvent* /*event*/)
{
    fit_to_viewport();
}

void ReceiveArea::showEvent(QShowEvent* event)
{
    FramePacer::attach(window());
    NoLayoutEdit::showEvent(event);
}

void ReceiveArea::changeEvent(QEvent* event)
{
    NoLayoutEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        measure_font();
}
