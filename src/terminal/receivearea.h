// The area that shows received data, at the same cost for each byte however much it holds.
#pragma once

#include "receivelayout.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QRawFont>

/// A QPlainTextEdit whose stock layout is replaced, because that lays out a whole paragraph at each
/// insertion: a stream without line breaks costs more with every byte and soon freezes the window.
/// Document, cursor, formats, selection and signals are the stock ones. Text is shown in a grid of
/// equal cells (wide characters take two), whatever the font: a character of a proportional font
/// stands at the left of its cell. So wrapping is counting, and only what is visible is drawn.
///
/// What it relies on in Qt; without it, its tests fail:
/// - QPlainTextDocumentLayout::documentChanged and blockBoundingRect are virtual, the widget
///   reaches its layout by them, and an invalid rectangle keeps it from scrolling by itself;
/// - setTextCursor goes through the virtual doSetTextCursor;
/// - QTextCursor::insertText and setPosition ask the block's layout for lines outside edit blocks
///   only, and make do with none;
/// - a cursor at the end of the document moves along with text that is inserted there.
///
/// Stock calls that insert or move a cursor work, but cost the length of the cursor's paragraph.
class ReceiveArea : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit ReceiveArea(QWidget* parent = nullptr);

    /// Drops any selection, takes the last `replaced` characters away (of the last paragraph),
    /// inserts `prefix` and then `text` at the end, each as insertPlainText would there, and shows
    /// the end. All is in the document when it returns; painting waits for the next frame.
    void append_chunk(const QString& prefix, const QString& text, int replaced = 0);

    /// The same for a whole line: `text` in the character format of the end but for this
    /// foreground, and behind it a line break without it.
    void append_line(const QString& text, const QBrush& foreground);

    /// The stock functions of these names ask the stock layout.
    QTextCursor cursorForPosition(const QPoint& point) const;
    QRect cursorRect(const QTextCursor& cursor) const;
    QRect cursorRect() const { return cursorRect(textCursor()); }

    /// Columns and rows of cells that fit into the viewport, at least 1.
    int columns() const { return text_layout->rows().columns(); }
    int visible_rows() const;
    /// The text of a row as it is painted, from 0 at the top of the document.
    QString row_text(int row) const;

public slots:
    void selectAll(); ///< as the stock one, without its cost

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void doSetTextCursor(const QTextCursor& cursor) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    /// What a drag extends the selection by.
    enum class Unit { character, word, paragraph };
    struct Span
    {
        int from;
        int to;
    };

    void move_to_end();
    template <typename Insert> void append(Insert insert);
    void measure_font();
    void fit_to_viewport();
    void rows_changed();
    void set_scroll_bar(int top_row);
    void show_position(int position);
    bool at_end() const;

    void paint_row(QPainter& painter, int row, qreal y, Span selection) const;
    void paint_text(QPainter& painter, int from, int to, int column, qreal y,
                    const QColor& color) const;
    void paint_glyphs(QPainter& painter, const QString& text, const QVector<QPointF>& at,
                      qreal baseline) const;

    int position_at(const QPoint& point) const;
    Span span_at(int position, Unit unit) const;
    void select(int anchor, int position);
    void extend_selection(const QPoint& point);
    void offer_selection() const;
    void start_drag();

    ReceiveLayout* text_layout;
    QRawFont glyphs;
    qreal cell_width = 1;
    qreal row_height = 1;
    qreal ascent = 0;
    int margin = 0;

    Unit unit = Unit::character;
    Span pressed = {0, 0}; ///< what the press selected, which a drag keeps selected
    QPoint press_point;
    QPoint drag_point;
    bool may_drag = false; ///< the press was on the selection
    QElapsedTimer since_double_click;
    QBasicTimer scroll_timer; ///< runs while a drag is past the edge
};
