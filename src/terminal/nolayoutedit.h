// A text edit in which Qt lays nothing out. What the receive area does to Qt's insides is all here.
#pragma once

#include "terminal/rowtable.h"

#include <QPlainTextEdit>

// A QPlainTextEdit whose stock layout is replaced, because that lays out a whole paragraph at each
// insertion: a stream without line breaks costs more with every byte and soon freezes the window.
// Here a RowTable is kept equal to the document instead. Document, cursor, formats, selection and
// signals are the stock ones; who derives paints the rows, scrolls and maps points to positions.
//
// What it relies on in Qt. Where that decides more than the cost, test_nolayoutedit and
// test_receivearea fail without it:
// - QPlainTextDocumentLayout::documentChanged and blockBoundingRect are virtual, the widget
//   reaches its layout by them, and an invalid rectangle keeps it from scrolling by itself;
// - setTextCursor goes through the virtual doSetTextCursor;
// - QTextCursor::insertText and setPosition ask the block's layout for lines outside edit blocks
//   only, and make do with none;
// - a QTextLayout is no more than a pointer to its engine;
// - a cursor at the end of the document moves along with text that is inserted there;
// - the scroll bar's actionTriggered is what turns the stock widget's pages, its rangeChanged
//   what has the scroll area laid out, and "select-all" the name of that action in its menu.
//
// Stock calls that insert or move a cursor work, but cost the length of the cursor's paragraph.
class NoLayoutEdit : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit NoLayoutEdit(QWidget* parent = nullptr);

    // The text as it is wrapped now.
    const RowTable& rows() const;
    int text_length() const { return rows().length(); }
    // The text of [from, to) as far as it exists, with U+2029 between paragraphs. Costs its length
    // and not that of its paragraph.
    QString text_between(int from, int to) const;

public slots:
    void selectAll(); // as the stock one, without its cost

signals:
    void front_dropped(int count); // the document has lost its first characters
    void text_changed(int from);   // from there on the document holds another or more text
    void rows_changed();           // the rows are up to date with the document again
    void cursor_set(int position); // by setTextCursor

protected:
    class Layout;

    // One edit at the end of the text, while it lives. Other edits of the document are read back
    // from it, which is slower.
    class EndEdit
    {
    public:
        explicit EndEdit(NoLayoutEdit& edit);
        ~EndEdit();
        EndEdit(const EndEdit&) = delete;
        EndEdit& operator=(const EndEdit&) = delete;

        void remove(int count); // of the last paragraph; before any insertion
        void insert(const QString& text);
        void insert(const QString& text, const QTextCharFormat& format);

    private:
        Layout& layout;
        QTextCursor end;
    };

    void set_columns(int columns);
    // Like the stock calls, but without their cost, and nothing scrolls.
    QTextCursor cursor_at(int position) const;
    void select(int anchor, int position);
    // Rows 0 to `most` can be the top one.
    void set_scroll_bar(int most, int page, int top_row);

    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void doSetTextCursor(const QTextCursor& cursor) override;

private:
    Layout* text_layout = nullptr; // the document's own
};
