// What the receive area looks like: rows of cells, colours, selection, hits, placeholder.
#include "terminal/receivearea.h"

#include "terminal/textsearch.h"

#include <QGlyphRun>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

namespace {

struct Look
{
    int to = 0; // it holds up to this position
    QBrush foreground;
    QBrush background;
};

// Legible on a light and on a dark ground.
constexpr QRgb HIT_TEXT = 0xFF000000;
constexpr QRgb HIT_GROUND = 0xFFFFE46B;
constexpr QRgb CURRENT_HIT_GROUND = 0xFFFF9D3C;

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
    const RowTable& table = rows();
    QString text;
    for (int at = table.row_start(row); at < table.row_end(row); ++at)
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
    const int top = verticalScrollBar()->value();
    const int past = std::min(rows().row_count(), top + visible_rows() + 1);
    const Highlights in_sight = highlights(top, past - 1);
    qreal y = margin;
    for (int row = top; row < past; ++row) {
        paint_row(painter, row, y, in_sight);
        y += row_height;
    }
}

int ReceiveArea::Span::cut(int begin, int end) const
{
    for (const int edge : {from, to})
        if (begin < edge && edge < end)
            return edge;
    return end;
}

ReceiveArea::Highlights ReceiveArea::highlights(int first_row, int last_row) const
{
    const QTextCursor cursor = textCursor();
    Highlights found = {{cursor.selectionStart(), cursor.selectionEnd()}, current_hit, {}};
    if (search == nullptr)
        return found;
    const RowTable& table = rows();
    const int length = search->wanted_length();
    const int from = std::max(0, table.row_start(first_row) - length + 1);
    for (const int hit : search->hits(from, table.row_end(last_row))) {
        if (!found.hits.empty() && hit <= found.hits.back().to)
            found.hits.back().to = hit + length;
        else
            found.hits.push_back({hit, hit + length});
    }
    return found;
}

void ReceiveArea::paint_row(QPainter& painter, int row, qreal y, const Highlights& lit) const
{
    const RowTable& table = rows();
    const auto group = !isEnabled() ? QPalette::Disabled
                       : hasFocus() ? QPalette::Active
                                    : QPalette::Inactive;
    const int end = table.row_end(row);
    int from = table.row_start(row);
    int column = 0;
    auto hit = std::lower_bound(lit.hits.begin(), lit.hits.end(), from,
                                [](const Span& each, int at) { return each.to <= at; });
    for (const Look& look : looks_of(*document(), from, end)) {
        while (from < look.to) {
            if (hit != lit.hits.end() && hit->to <= from)
                ++hit;
            const Span near_hit = hit != lit.hits.end() ? *hit : Span{-1, -1};
            int to = look.to;
            for (const Span& span : {lit.selection, lit.current_hit, near_hit})
                to = span.cut(from, to);
            QColor color = look.foreground.style() != Qt::NoBrush ? look.foreground.color()
                                                                  : palette().text().color();
            QBrush background = look.background;
            if (lit.selection.holds(from)) {
                color = palette().color(group, QPalette::HighlightedText);
                background = palette().brush(group, QPalette::Highlight);
            } else if (near_hit.holds(from)) {
                color = HIT_TEXT;
                background = QColor(lit.current_hit.holds(from) ? CURRENT_HIT_GROUND : HIT_GROUND);
            }
            int next = column;
            for (int at = from; at < to; ++at)
                next = column_after(table.cell(at), next, table.columns());
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
    const RowTable& table = rows();
    painter.setPen(color);
    QString plain; // characters that are one glyph each
    QVector<QPointF> plain_at;
    for (int at = from; at < to;) {
        const Cell cell = table.cell(at);
        int next = at + 1;
        while (next < to && table.cell(next) == Cell::Joined)
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
        } else if (cell == Cell::Narrow || cell == Cell::Wide) {
            plain += c;
            plain_at += place;
        }
        column = column_after(cell, column, table.columns());
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
