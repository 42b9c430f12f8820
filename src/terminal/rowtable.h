// Wraps a long text into the rows of a grid that is some columns wide.
#pragma once

#include "terminal/celltext.h"

#include <QString>
#include <cstdint>
#include <vector>

// The column after a character that begins at `column`.
int column_after(Cell cell, int column, int columns);

// The rows of a text that grows at its end. Words stay whole where they can, wide characters too,
// and one blank may be past the edge, so that a row of hexadecimal pairs uses its full width.
// Positions are those of the document: each paragraph counts its characters and one for its
// separator; rows are numbered from 0. Adding costs the same at any length; a new width costs one
// pass over all rows.
class RowTable
{
public:
    static constexpr int TAB_STOP = 8; // cells between two tab stops

    explicit RowTable(int columns);

    void append(const QString& text); // with line breaks, as QTextCursor inserts them
    void append_paragraph_end();      // the next text begins a paragraph
    void drop_front(int count);       // forgets the first characters
    void drop_from(int position);     // forgets everything from there on
    void set_columns(int columns);

    int columns() const { return width; }
    int length() const { return static_cast<int>(cells.end() - cells.begin()); }
    int row_count() const { return static_cast<int>(rows.size() - front); }
    int row_start(int row) const;
    int row_end(int row) const; // after the last character, without a separator
    int row_of(int position) const;
    Cell cell(int position) const { return cells.at(cells.begin() + position); }
    // The column at which `position` of this row is shown.
    int column_of(int row, int position) const;

private:
    // Start of a row, and whether it is a paragraph's first one.
    class Row
    {
    public:
        Row(std::int64_t start, bool opens)
            : value(start * 2 + (opens ? 1 : 0))
        {
        }
        std::int64_t start() const { return value / 2; }
        bool opens_paragraph() const { return value % 2 != 0; }

    private:
        std::int64_t value;
    };

    void append_piece(const QChar* text, int count);
    void wrap_last_row();
    // Adds the rows of [start, end), text of one paragraph, but for the first one.
    void wrap(std::int64_t start, std::int64_t end);
    void wrap_all();

    CellText cells;
    std::vector<Row> rows; // those before `front` are dropped ones
    size_t front = 0;
    int width = 1;
};
