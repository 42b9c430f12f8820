#include "terminal/receivelayout.h"

#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>
#include <cstring>

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

} // namespace

ReceiveLayout::ReceiveLayout(QTextDocument* document)
    : QPlainTextDocumentLayout(document)
    , table(FIRST_COLUMNS)
{
    read_again(0);
}

void ReceiveLayout::announce(const QString& text)
{
    const int before = table.length();
    table.append(text);
    announced += table.length() - before;
}

void ReceiveLayout::announce_removal(int count)
{
    table.drop_from(table.length() - count);
    withdrawn += count;
}

QRectF ReceiveLayout::blockBoundingRect(const QTextBlock& /*block*/) const
{
    constexpr qreal ABOVE_EVERYTHING = -1e9;
    return {0, 0, 0, ABOVE_EVERYTHING};
}

void ReceiveLayout::documentChanged(int from, int removed, int added)
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
        emit front_dropped(removed);
    } else if (!text_is_the_same) {
        if (!was_announced)
            read_again(from);
        emit text_changed(from);
    }
    emit changed();
}

void ReceiveLayout::read_again(int from)
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
