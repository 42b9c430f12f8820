// The area that shows received data, at the same cost for each byte however much it holds.
#pragma once

#include "terminal/receivelayout.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QRawFont>
#include <vector>

class TextSearch;

/// A QPlainTextEdit whose stock layout is replaced, because that lays out a whole paragraph at each
/// insertion: a stream without line breaks costs more with every byte and soon freezes the window.
/// Document, cursor, formats, selection and signals are the stock ones. Text is shown in a grid of
/// equal cells (wide characters take two), whatever the font: a character of a proportional font
/// is at the left of its cell. So wrapping is counting, and only what is visible is drawn.
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
    /// foreground, and after it a line break without it.
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

    int text_length() const { return text_layout->rows().length(); }
    /// The text of [from, to) as far as it exists, with U+2029 between paragraphs. Costs its length
    /// and not that of its paragraph.
    QString text_between(int from, int to) const;
    /// The selection, if it lies in one paragraph and has at most so many characters.
    QString selected_line(int most) const;
    int first_position_in_sight() const;
    void show_span(int from, int to); ///< scrolls, if some of it is out of sight

    /// Paints all that `search` finds in sight, until it is called again; null ends it.
    void mark_hits(const TextSearch* search);
    void mark_current_hit(int from, int to); ///< paints it apart from the others
    void reserve_top(int height);            ///< of the frame, for a widget above the text

public slots:
    void selectAll(); ///< as the stock one, without its cost
    void font_grow() { font_resize(1); }
    void font_shrink() { font_resize(-1); }
    void font_reset(); ///< to the size it had first

signals:
    void front_dropped(int count); ///< as ReceiveLayout has them
    void text_changed(int from);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
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
        bool holds(int position) const { return from <= position && position < to; }
        /// Its first edge in (begin, end), or else `end`.
        int cut(int begin, int end) const;
    };
    /// What is painted in other colours.
    struct Highlights
    {
        Span selection;
        Span current_hit;
        std::vector<Span> hits; ///< in order, none touches the next
    };

    void move_to_end();
    template <typename Insert> void append(Insert insert);
    void measure_font();
    void fit_to_viewport();
    void rows_changed();
    void set_scroll_bar(int top_row);
    void show_position(int position);
    bool at_end() const;

    void font_resize(int points);
    void set_font_size(qreal points);
    Highlights highlights(int first_row, int last_row) const;
    void paint_row(QPainter& painter, int row, qreal y, const Highlights& highlights) const;
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
    qreal font_size_before = 0; ///< in points, before it was changed; 0 if it never was
    int wheel_turn = 0;         ///< with Ctrl, in eighths of a degree, short of a step
    const TextSearch* search = nullptr;
    Span current_hit = {-1, -1};

    Unit unit = Unit::character;
    Span pressed = {0, 0}; ///< what the press selected, which a drag keeps selected
    QPoint press_point;
    QPoint drag_point;
    bool may_drag = false; ///< the press was on the selection
    QElapsedTimer since_double_click;
    QBasicTimer scroll_timer; ///< runs while a drag is past the edge
};
