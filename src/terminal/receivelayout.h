// The document layout of the receive area: it counts rows and lays nothing out.
#pragma once

#include "terminal/rowtable.h"

#include <QPlainTextDocumentLayout>
#include <QTextLayout>
#include <initializer_list>
#include <memory>
#include <vector>

/// Keeps a RowTable equal to the document. QPlainTextDocumentLayout, its base, would lay the
/// changed block out anew at each change, which costs the block's whole length.
class ReceiveLayout : public QPlainTextDocumentLayout
{
    Q_OBJECT
public:
    explicit ReceiveLayout(QTextDocument* document);

    const RowTable& rows() const { return table; }
    void set_columns(int columns) { table.set_columns(columns); }

    /// Takes over text that its caller goes on to insert at the end of the document. Other changes
    /// are read back from the document, which is slower.
    void announce(const QString& text);
    /// The same for as many characters that its caller goes on to remove from the end, before any
    /// insertion in the same edit block.
    void announce_removal(int count);

    /// A rectangle that means nothing, of a height that ends QPlainTextEdit's search for the
    /// block's place at the first block and keeps it from scrolling there.
    QRectF blockBoundingRect(const QTextBlock& block) const override;

signals:
    void front_dropped(int count); ///< the document has lost its first characters
    void text_changed(int from);   ///< from there on the document holds another or more text
    void changed();                ///< the rows are up to date with the document again

protected:
    void documentChanged(int from, int removed, int added) override;

private:
    void read_again(int from);

    RowTable table;
    int announced = 0; ///< characters in `table` that the document doesn't have yet
    int withdrawn = 0; ///< characters of the document that `table` doesn't have any more
};

/// While one lives, the text layouts of the blocks at some positions of a document look empty.
/// Whatever QPlainTextEdit and QTextCursor do with a cursor, they ask the layout of its block for a
/// line, for which the layout analyses the whole block: 2 s for one of 64 MB. An empty one answers
/// at once that it has no lines, as does any layout in the receive area. Only for calls that leave
/// the text alone. It relies on a QTextLayout being no more than a pointer to its engine.
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
        int position;
        QTextLayout* layout;
        std::unique_ptr<QTextLayout> real;
    };
    QTextDocument* document;
    std::vector<Swapped> swapped;
};
