// What the receive area looks like: rows of cells, colours, selection, placeholder.
#include "receivearea.h"

#include <QGlyphRun>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

namespace {

struct Look
{
    int to; ///< it holds up to this position
    QBrush foreground;
    QBrush background;
};

// The formats of [from, to), which lies in one block.
std::vector<Look> looks_of(const QTextDocument& document, int from, int to)
{
    std::vector<Look> looks;
    const QTextBlock block = document.findBlock(from);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (fragment.position() >= to)
            break;
        const int end = fragment.position() + fragment.length();
        if (end <= from)
            continue;
        const QTextCharFormat format = fragment.charFormat();
        looks.push_back({std::min(end, to), format.foreground(), format.background()});
    }
    return looks;
}

bool is_control(QChar c)
{
    return c.unicode() < 0x20 || (c.unicode() >= 0x7F && c.unicode() < 0xA0);
}

} // namespace

QString ReceiveArea::row_text(int row) const
{
    const RowTable& rows = text_layout->rows();
    QString text;
    for (int at = rows.row_start(row); at < rows.row_end(row); ++at)
        text += document()->characterAt(at);
    return text;
}

void ReceiveArea::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setClipRect(event->rect());
    if (document()->isEmpty()) {
        painter.setPen(palette().placeholderText().color());
        painter.drawText(viewport()->rect().adjusted(margin, margin, 0, 0),
                         Qt::AlignTop | Qt::TextWordWrap, placeholderText());
        return;
    }
    painter.setFont(font());
    const QTextCursor cursor = textCursor();
    const Span selection = {cursor.selectionStart(), cursor.selectionEnd()};
    const int last = text_layout->rows().row_count();
    qreal y = margin;
    for (int row = verticalScrollBar()->value(); row < last && y < viewport()->height(); ++row) {
        paint_row(painter, row, y, selection);
        y += row_height;
    }
}

void ReceiveArea::paint_row(QPainter& painter, int row, qreal y, Span selection) const
{
    const RowTable& rows = text_layout->rows();
    const auto group = !isEnabled() ? QPalette::Disabled
                       : hasFocus() ? QPalette::Active
                                    : QPalette::Inactive;
    const int end = rows.row_end(row);
    int from = rows.row_start(row);
    int column = 0;
    for (const Look& look : looks_of(*document(), from, end)) {
        const int selected_from = std::min(std::max(selection.from, from), look.to);
        const int selected_to = std::min(std::max(selection.to, from), look.to);
        for (const int to : {selected_from, selected_to, look.to}) {
            const bool selected = to == selected_to && from >= selection.from;
            int next = column;
            for (int at = from; at < to; ++at)
                next = column_after(rows.cell(at), next, rows.columns());
            QColor color = look.foreground.style() != Qt::NoBrush ? look.foreground.color()
                                                                  : palette().text().color();
            QBrush background = look.background;
            if (selected) {
                color = palette().color(group, QPalette::HighlightedText);
                background = palette().brush(group, QPalette::Highlight);
            }
            if (background.style() != Qt::NoBrush && next > column)
                painter.fillRect(QRectF(margin + column * cell_width, y,
                                        (next - column) * cell_width, row_height),
                                 background);
            paint_text(painter, from, to, column, y, color);
            column = next;
            from = to;
        }
    }
}

void ReceiveArea::paint_text(QPainter& painter, int from, int to, int column, qreal y,
                             const QColor& color) const
{
    const RowTable& rows = text_layout->rows();
    painter.setPen(color);
    QString plain; // characters that are one glyph each
    QVector<QPointF> plain_at;
    for (int at = from; at < to;) {
        const Cell cell = rows.cell(at);
        int next = at + 1;
        while (next < to && rows.cell(next) == Cell::joined)
            ++next;
        const QPointF place(margin + column * cell_width, y + ascent);
        QChar c = document()->characterAt(at);
        if (c.isSurrogate() && next == at + 1)
            c = QChar(QChar::ReplacementCharacter);
        if (next > at + 1) {
            QString joined;
            for (int i = at; i < next; ++i)
                joined += document()->characterAt(i);
            painter.drawText(place, joined);
        } else if (cell == Cell::narrow || cell == Cell::wide) {
            plain += c;
            plain_at += place;
        }
        column = column_after(cell, column, rows.columns());
        at = next;
    }
    paint_glyphs(painter, plain, plain_at, y + ascent);
}

void ReceiveArea::paint_glyphs(QPainter& painter, const QString& text, const QVector<QPointF>& at,
                               qreal baseline) const
{
    if (text.isEmpty())
        return;
    const QVector<quint32> found = glyphs.glyphIndexesForString(text);
    QVector<quint32> indexes;
    QVector<QPointF> positions;
    for (int i = 0; i < text.size(); ++i) {
        const quint32 glyph = i < found.size() ? found[i] : 0;
        if (glyph != 0) {
            indexes += glyph;
            positions += at[i] - QPointF(0, baseline);
        } else if (!is_control(text[i])) {
            painter.drawText(at[i], QString(text[i])); // from another font that has it
        }
    }
    QGlyphRun run;
    run.setRawFont(glyphs);
    run.setGlyphIndexes(indexes);
    run.setPositions(positions);
    painter.drawGlyphRun(QPointF(0, baseline), run);
}
