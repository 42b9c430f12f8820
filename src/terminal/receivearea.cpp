#include "terminal/receivearea.h"

#include "terminal/framepacer.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QtMath>
#include <algorithm>
#include <memory>

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
    : QPlainTextEdit(parent)
{
    auto* text = new QTextDocument(this);
    text_layout = new ReceiveLayout(text);
    text->setDocumentLayout(text_layout);
    text->setUndoRedoEnabled(false); // its history would hold everything ever received
    QTextOption option = text->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight); // else a cursor move searches the block for letters
    text->setDefaultTextOption(option);
    setDocument(text);
    connect(text_layout, &ReceiveLayout::changed, this, &ReceiveArea::rows_changed);
    connect(text_layout, &ReceiveLayout::front_dropped, this, &ReceiveArea::front_dropped);
    connect(text_layout, &ReceiveLayout::text_changed, this, &ReceiveArea::text_changed);
    // The stock widget turns pages by asking its layout for lines; the scroll bar alone does it
    // too.
    disconnect(verticalScrollBar(), SIGNAL(actionTriggered(int)), this, nullptr);
    setFont(fixed_font());
    measure_font();
}

void ReceiveArea::append_chunk(const QString& prefix, const QString& text, int replaced)
{
    move_to_end();
    append([&](QTextCursor& end) {
        if (replaced > 0) {
            end.setPosition(end.position() - replaced, QTextCursor::KeepAnchor);
            text_layout->announce_removal(replaced);
            end.removeSelectedText();
        }
        for (const QString* part : {&prefix, &text}) {
            if (part->isEmpty())
                continue;
            text_layout->announce(*part);
            end.insertText(*part);
        }
    });
}

void ReceiveArea::append_line(const QString& text, const QBrush& foreground)
{
    move_to_end(); // from wherever a click has put the cursor, into a highlighted line perhaps
    const QTextCharFormat format = currentCharFormat();
    QTextCharFormat highlighted = format;
    highlighted.setForeground(foreground);
    append([&](QTextCursor& end) {
        const QString line_break = QStringLiteral("\n");
        text_layout->announce(text);
        end.insertText(text, highlighted);
        text_layout->announce(line_break);
        end.insertText(line_break, format);
    });
}

template <typename Insert> void ReceiveArea::append(Insert insert)
{
    QTextCursor end(document());
    end.beginEditBlock();
    end.setPosition(text_layout->rows().length());
    insert(end);
    end.endEditBlock();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void ReceiveArea::move_to_end()
{
    const int end = text_layout->rows().length();
    const QTextCursor cursor = textCursor();
    // After a clear the cursor is at the end, but with the format of the text that was there.
    if (cursor.hasSelection() || cursor.position() != end || end == 0)
        select(end, end);
}

void ReceiveArea::doSetTextCursor(const QTextCursor& cursor)
{
    const QTextCursor old = textCursor();
    {
        const EmptyLayouts empty(
            document(), {old.anchor(), old.position(), cursor.anchor(), cursor.position()});
        QPlainTextEdit::doSetTextCursor(cursor);
    }
    show_position(cursor.position());
    viewport()->update();
}

void ReceiveArea::selectAll()
{
    const QTextCursor old = textCursor();
    const EmptyLayouts empty(document(),
                             {old.anchor(), old.position(), 0, text_layout->rows().length()});
    QPlainTextEdit::selectAll();
}

void ReceiveArea::select(int anchor, int position)
{
    const QTextCursor old = textCursor();
    const EmptyLayouts empty(document(), {old.anchor(), old.position(), anchor, position});
    QTextCursor cursor(document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    QPlainTextEdit::doSetTextCursor(cursor);
    viewport()->update();
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
    const int top = text_layout->rows().row_start(
        std::min(verticalScrollBar()->value(), text_layout->rows().row_count() - 1));
    const qreal width = viewport()->width() - 2 * margin;
    text_layout->set_columns(std::max(1, static_cast<int>(width / cell_width)));
    set_scroll_bar(was_at_end ? INT_MAX : text_layout->rows().row_of(top));
    viewport()->update();
}

void ReceiveArea::rows_changed()
{
    set_scroll_bar(at_end() ? INT_MAX : verticalScrollBar()->value());
    viewport()->update();
}

void ReceiveArea::set_scroll_bar(int top_row)
{
    QScrollBar* const bar = verticalScrollBar();
    const int page = visible_rows();
    const int most = std::max(0, text_layout->rows().row_count() - page);
    const bool appears = (most > 0) != (bar->maximum() > 0);
    {
        // Each change of the range has the scroll area laid out; only the bar's coming and going
        // needs that.
        const QSignalBlocker quiet(bar);
        bar->setPageStep(page);
        bar->setRange(0, most);
        bar->setValue(std::min(top_row, most));
    }
    if (appears)
        emit bar->rangeChanged(0, most);
}

bool ReceiveArea::at_end() const
{
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void ReceiveArea::show_position(int position)
{
    const int row = text_layout->rows().row_of(position);
    const int top = verticalScrollBar()->value();
    const int page = visible_rows();
    if (row < top)
        verticalScrollBar()->setValue(row);
    else if (row >= top + page)
        verticalScrollBar()->setValue(row - page + 1);
}

bool ReceiveArea::event(QEvent* event)
{
    // The stock widget would first look for its cursor to place a menu asked for by a key.
    if (event->type() == QEvent::ContextMenu) {
        auto* const menu = static_cast<QContextMenuEvent*>(event);
        if (menu->reason() == QContextMenuEvent::Keyboard) {
            contextMenuEvent(menu);
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

void ReceiveArea::resizeEvent(QResizeEvent* /*event*/)
{
    fit_to_viewport();
}

void ReceiveArea::showEvent(QShowEvent* event)
{
    FramePacer::attach(window());
    const EmptyLayouts empty(document(), {textCursor().position()});
    QPlainTextEdit::showEvent(event);
}

void ReceiveArea::changeEvent(QEvent* event)
{
    const QTextCursor cursor = textCursor();
    {
        const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
        QPlainTextEdit::changeEvent(event);
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ApplicationFontChange)
        measure_font();
}

void ReceiveArea::focusInEvent(QFocusEvent* event)
{
    const QTextCursor cursor = textCursor();
    const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
    QPlainTextEdit::focusInEvent(event);
    viewport()->update(); // the selection's colour shows where the focus is
}

void ReceiveArea::focusOutEvent(QFocusEvent* event)
{
    const QTextCursor cursor = textCursor();
    const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
    QPlainTextEdit::focusOutEvent(event);
    viewport()->update();
}

void ReceiveArea::contextMenuEvent(QContextMenuEvent* event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    if (auto* all = menu->findChild<QAction*>(QStringLiteral("select-all"))) {
        all->disconnect(SIGNAL(triggered(bool)));
        connect(all, &QAction::triggered, this, &ReceiveArea::selectAll);
    }
    menu->exec(event->globalPos());
}
