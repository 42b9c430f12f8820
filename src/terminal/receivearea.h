// The area that shows received data, at the same cost for each byte however much it holds.
#pragma once

#include "terminal/nolayoutedit.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QRawFont>
#include <vector>

class TextSearch;

// Text is shown in a grid of equal cells (wide characters take two), whatever the font: a
// character of a proportional font is at the left of its cell. So wrapping is counting, and only
// what is visible is drawn.
class ReceiveArea : public NoLayoutEdit
{
    Q_OBJECT
public:
    explicit ReceiveArea(QWidget* parent = nullptr);

    // Drops any selection, takes the last `replaced` characters away (of the last paragraph),
    // inserts `prefix` and then `text` at the end, each as insertPlainText would there, and shows
    // the end. All is in the document when it returns; painting waits for the next frame.
    void append_chunk(const QString& prefix, const QString& text, int replaced = 0);

    // The same for a whole line: `text` in the character format of the end but for this
    // foreground, and after it a line break without it.
    void append_line(const QString& text, const QBrush& foreground);

    // The stock functions of these names ask the stock layout.
    QTextCursor cursorForPosition(const QPoint& point) const;
    QRect cursorRect(const QTextCursor& cursor) const;
    QRect cursorRect() const { return cursorRect(textCursor()); }

    // Columns and rows of cells that fit into the viewport, at least 1.
    int columns() const { return rows().columns(); }
    int visible_rows() const;
    // The text of a row as it is painted, from 0 at the top of the document.
    QString row_text(int row) const;

    // The selection, if it lies in one paragraph and has at most so many characters.
    QString selected_line(int most) const;
    int first_position_in_sight() const;
    void show_span(int from, int to); // scrolls, if some of it is out of sight

    // Paints all that `search` finds in sight, until it is called again; null ends it.
    void mark_hits(const TextSearch* search);
    void mark_current_hit(int from, int to); // paints it apart from the others
    void reserve_top(int height);            // of the frame, for a widget above the text

public slots:
    void font_grow() { font_resize(1); }
    void font_shrink() { font_resize(-1); }
    void font_reset(); // to the size it had first

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    QMimeData* createMimeDataFromSelection() const override;

private:
    // What a drag extends the selection by.
    enum class Unit { Character, Word, Paragraph };
    struct Span
    {
        int from = 0;
        int to = 0;
        bool holds(int position) const { return from <= position && position < to; }
        // Its first edge in (begin, end), or else `end`.
        int cut(int begin, int end) const;
    };
    // What is painted in other colours.
    struct Highlights
    {
        Span selection;
        Span current_hit;
        std::vector<Span> hits; // in order, none touches the next
    };

    void move_to_end();
    void show_end();
    void measure_font();
    void fit_to_viewport();
    void keep_place();
    void set_top_row(int row);
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
    bool selects(Qt::MouseButtons buttons) const;
    void extend_selection(const QPoint& point);
    void offer_selection() const;
    void start_drag();

    QRawFont glyphs;
    qreal cell_width = 1;
    qreal row_height = 1;
    qreal ascent = 0;
    int margin = 0;
    qreal font_size_before = 0; // in points, before it was changed; 0 if it never was
    int wheel_turn = 0;         // with Ctrl, in eighths of a degree, short of a step
    const TextSearch* search = nullptr;
    Span current_hit = {-1, -1};

    Unit unit = Unit::Character;
    Span pressed = {0, 0}; // what the press selected, which a drag keeps selected
    QPoint press_point;
    QPoint drag_point;
    bool may_drag = false; // the press was on the selection
    QElapsedTimer since_double_click;
    QBasicTimer scroll_timer; // runs while a drag is past the edge
};
