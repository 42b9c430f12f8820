#include "terminal/nolayoutedit.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPlainTextDocumentLayout>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <vector>

namespace {

// The columns until the area is shown and knows better.
constexpr int FIRST_COLUMNS = 80;

// Up to so many characters are read one by one rather than by a copy of their whole block.
constexpr int SHORT_TEXT = 4096;

QString text_from(const QTextBlock& block, int position)
{
    const int length = block.position() + block.length() - 1 - position;
    if (length > SHORT_TEXT)
        return block.text().mid(position - block.position());
    QString text;
    text.reserve(length);
    for (int i = 0; i < length; ++i)
        text += block.document()->characterAt(position + i);
    return text;
}

static_assert(sizeof(QTextLayout) == sizeof(void*), "a QTextLayout holds more than its engine");

void swap_engines(QTextLayout& a, QTextLayout& b)
{
    unsigned char kept[sizeof(QTextLayout)];
    std::memcpy(kept, static_cast<void*>(&a), sizeof kept);
    std::memcpy(static_cast<void*>(&a), static_cast<void*>(&b), sizeof kept);
    std::memcpy(static_cast<void*>(&b), kept, sizeof kept);
}

// While one lives, the text layouts of the blocks at some positions of a document look empty.
// Whatever QPlainTextEdit and QTextCursor do with a cursor, they ask the layout of its block for a
// line, for which the layout analyses the whole block: 2 s for one of 64 MB. An empty one answers
// at once that it has no lines, as does any layout here. Only for calls that leave the text alone.
class EmptyLayouts
{
public:
    EmptyLayouts(QTextDocument* document, std::initializer_list<int> positions);
    ~EmptyLayouts();
    EmptyLayouts(const EmptyLayouts&) = delete;
    EmptyLayouts& operator=(const EmptyLayouts&) = delete;

private:
    struct Swapped
    {
        int position = 0;
        QTextLayout* layout = nullptr;
        std::unique_ptr<QTextLayout> real;
    };
    QTextDocument* const document;
    std::vector<Swapped> swapped;
};

EmptyLayouts::EmptyLayouts(QTextDocument* text, std::initializer_list<int> positions)
    : document(text)
{
    for (const int position : positions) {
        const QTextBlock block = document->findBlock(position);
        if (!block.isValid())
            continue;
        QTextLayout* const layout = block.layout();
        const bool done = std::any_of(swapped.begin(), swapped.end(),
                                      [&](const Swapped& other) { return other.layout == layout; });
        if (done)
            continue;
        swapped.push_back({position, layout, std::make_unique<QTextLayout>(QString())});
        swap_engines(*layout, *swapped.back().real);
    }
}

EmptyLayouts::~EmptyLayouts()
{
    // A slot may have cleared the document meanwhile; then the engine goes with its keeper.
    for (const Swapped& each : swapped) {
        const QTextBlock block = document->findBlock(each.position);
        if (block.isValid() && block.layout() == each.layout)
            swap_engines(*each.layout, *each.real);
    }
}

} // namespace

// Keeps a RowTable equal to the document and lays nothing out.
class NoLayoutEdit::Layout : public QPlainTextDocumentLayout
{
public:
    Layout(QTextDocument* document, NoLayoutEdit& owner);

    // Takes over text that its caller goes on to insert at the end of the document.
    void announce(const QString& text);
    // The same for as many characters that its caller goes on to remove from the end, before any
    // insertion in the same edit block.
    void announce_removal(int count);

    // A rectangle that means nothing, of a height that ends QPlainTextEdit's search for the
    // block's place at the first block and keeps it from scrolling there.
    QRectF blockBoundingRect(const QTextBlock& block) const override;

    RowTable table;

protected:
    void documentChanged(int from, int removed, int added) override;

private:
    void read_again(int from);

    NoLayoutEdit& edit;
    int announced = 0; // characters in `table` that the document doesn't have yet
    int withdrawn = 0; // characters of the document that `table` doesn't have any more
};

NoLayoutEdit::Layout::Layout(QTextDocument* document, NoLayoutEdit& owner)
    : QPlainTextDocumentLayout(document)
    , table(FIRST_COLUMNS)
    , edit(owner)
{
    read_again(0);
}

void NoLayoutEdit::Layout::announce(const QString& text)
{
    const int before = table.length();
    table.append(text);
    announced += table.length() - before;
}

void NoLayoutEdit::Layout::announce_removal(int count)
{
    table.drop_from(table.length() - count);
    withdrawn += count;
}

QRectF NoLayoutEdit::Layout::blockBoundingRect(const QTextBlock& /*block*/) const
{
    constexpr qreal ABOVE_EVERYTHING = -1e9;
    return {0, 0, 0, ABOVE_EVERYTHING};
}

void NoLayoutEdit::Layout::documentChanged(int from, int removed, int added)
{
    const int length = document()->characterCount() - 1;
    const bool was_announced = announced + withdrawn > 0 && removed == withdrawn &&
                               added == announced && from + added == length &&
                               table.length() == length;
    const bool text_is_the_same =
        announced + withdrawn == 0 && table.length() == length && removed != added;
    const bool front_was_removed =
        announced == 0 && from == 0 && added == 0 && table.length() - removed == length;
    announced = withdrawn = 0;
    if (front_was_removed) {
        table.drop_front(removed);
        emit edit.front_dropped(removed);
    } else if (!text_is_the_same) {
        if (!was_announced)
            read_again(from);
        emit edit.text_changed(from);
    }
    emit edit.rows_changed();
}

void NoLayoutEdit::Layout::read_again(int from)
{
    table.drop_from(std::min(from, table.length()));
    int position = table.length();
    for (QTextBlock block = document()->findBlock(position); block.isValid();) {
        table.append(text_from(block, position));
        position = block.position() + block.length();
        block = block.next();
        if (block.isValid())
            table.append_paragraph_end();
    }
}

NoLayoutEdit::NoLayoutEdit(QWidget* parent)
    : QPlainTextEdit(parent)
{
    auto* text = new QTextDocument(this);
    text_layout = new Layout(text, *this);
    text->setDocumentLayout(text_layout);
    text->setUndoRedoEnabled(false); // its history would hold everything ever received
    QTextOption option = text->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight); // else a cursor move searches the block for letters
    text->setDefaultTextOption(option);
    setDocument(text);
    // The stock widget turns pages by asking its layout for lines; the scroll bar alone does it
    // too.
    disconnect(verticalScrollBar(), SIGNAL(actionTriggered(int)), this, nullptr);
}

const RowTable& NoLayoutEdit::rows() const
{
    return text_layout->table;
}

void NoLayoutEdit::set_columns(int columns)
{
    text_layout->table.set_columns(columns);
}

NoLayoutEdit::EndEdit::EndEdit(NoLayoutEdit& edit)
    : layout(*edit.text_layout)
    , end(edit.document())
{
    end.beginEditBlock();
    end.setPosition(layout.table.length());
}

NoLayoutEdit::EndEdit::~EndEdit()
{
    end.endEditBlock();
}

void NoLayoutEdit::EndEdit::remove(int count)
{
    if (count <= 0)
        return;
    end.setPosition(end.position() - count, QTextCursor::KeepAnchor);
    layout.announce_removal(count);
    end.removeSelectedText();
}

void NoLayoutEdit::EndEdit::insert(const QString& text)
{
    layout.announce(text);
    end.insertText(text);
}

void NoLayoutEdit::EndEdit::insert(const QString& text, const QTextCharFormat& format)
{
    layout.announce(text);
    end.insertText(text, format);
}

QTextCursor NoLayoutEdit::cursor_at(int position) const
{
    const EmptyLayouts empty(document(), {0, position});
    QTextCursor cursor(document());
    cursor.setPosition(position);
    return cursor;
}

QString NoLayoutEdit::text_between(int from, int to) const
{
    const int end = std::min(to, text_length());
    if (from >= end)
        return {};
    const EmptyLayouts empty(document(), {from, end});
    QTextCursor cursor(document());
    cursor.setPosition(from);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

void NoLayoutEdit::doSetTextCursor(const QTextCursor& cursor)
{
    const QTextCursor old = textCursor();
    {
        const EmptyLayouts empty(
            document(), {old.anchor(), old.position(), cursor.anchor(), cursor.position()});
        QPlainTextEdit::doSetTextCursor(cursor);
    }
    emit cursor_set(cursor.position());
    viewport()->update();
}

void NoLayoutEdit::selectAll()
{
    const QTextCursor old = textCursor();
    const EmptyLayouts empty(document(), {old.anchor(), old.position(), 0, text_length()});
    QPlainTextEdit::selectAll();
}

void NoLayoutEdit::select(int anchor, int position)
{
    const QTextCursor old = textCursor();
    const EmptyLayouts empty(document(), {old.anchor(), old.position(), anchor, position});
    QTextCursor cursor(document());
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    QPlainTextEdit::doSetTextCursor(cursor);
    viewport()->update();
}

void NoLayoutEdit::set_scroll_bar(int most, int page, int top_row)
{
    QScrollBar* const bar = verticalScrollBar();
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

bool NoLayoutEdit::event(QEvent* event)
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

void NoLayoutEdit::showEvent(QShowEvent* event)
{
    const EmptyLayouts empty(document(), {textCursor().position()});
    QPlainTextEdit::showEvent(event);
}

void NoLayoutEdit::changeEvent(QEvent* event)
{
    const QTextCursor cursor = textCursor();
    const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
    QPlainTextEdit::changeEvent(event);
}

void NoLayoutEdit::focusInEvent(QFocusEvent* event)
{
    const QTextCursor cursor = textCursor();
    const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
    QPlainTextEdit::focusInEvent(event);
    viewport()->update(); // the selection's colour shows where the focus is
}

void NoLayoutEdit::focusOutEvent(QFocusEvent* event)
{
    const QTextCursor cursor = textCursor();
    const EmptyLayouts empty(document(), {cursor.anchor(), cursor.position()});
    QPlainTextEdit::focusOutEvent(event);
    viewport()->update();
}

void NoLayoutEdit::contextMenuEvent(QContextMenuEvent* event)
{
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    if (auto* all = menu->findChild<QAction*>(QStringLiteral("select-all"))) {
        all->disconnect(SIGNAL(triggered(bool)));
        connect(all, &QAction::triggered, this, &NoLayoutEdit::selectAll);
    }
    menu->exec(event->globalPos());
}
