#include "terminal/rowtable.h"

#include <algorithm>

namespace {

// Combining marks take no cell, so a row could go on for ever; one that has this many characters
// for each column ends.
constexpr int MOST_CHARACTERS_PER_COLUMN = 8;

bool may_end_after(Cell cell)
{
    return cell == Cell::Blank || cell == Cell::Tab || cell == Cell::Wide;
}

// Where the next row begins when one begins at `start` and its paragraph has text up to `end`;
// `end` if the rest fits into the row.
std::int64_t uneven_row_break(const CellText& cells, std::int64_t start, std::int64_t end,
                              int columns)
{
    const std::int64_t most = start + std::int64_t(columns) * MOST_CHARACTERS_PER_COLUMN;
    std::int64_t word = start;
    int column = 0;
    bool full = false;
    Cell before = Cell::Narrow;
    for (std::int64_t at = start; at < end; ++at) {
        const Cell cell = cells.at(at);
        if (at >= most)
            return at;
        if (cell == Cell::Newline)
            return at + 1;
        if (cell == Cell::Joined)
            continue;
        if (full)
            return at;
        if (may_end_after(before) || cell == Cell::Wide)
            word = at;
        const int next = column_after(cell, column, columns);
        if (cell == Cell::Blank || cell == Cell::Tab)
            full = column >= columns; // it is past the edge, and what follows begins a row
        else if (next > columns && at > start)
            return word > start ? word : at;
        column = next;
        before = cell;
    }
    return end;
}

// The same where a plain run has all that it takes: the row and one character more.
std::int64_t plain_row_break(const PlainRun& run, std::int64_t start, std::int64_t end, int columns)
{
    const std::int64_t edge = start + columns;
    if (edge >= end)
        return end;
    if (run.is_blank(edge))
        return edge + 1;
    const std::int64_t blank = run.last_blank(start, edge);
    return blank < 0 ? edge : blank + 1;
}

bool is_paragraph_end(QChar c)
{
    // The last two are the marks by which a QTextDocument delimits frames.
    return c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::ParagraphSeparator ||
           c == QChar(0xFDD0) || c == QChar(0xFDD1);
}

const QChar* paragraph_end(const QChar* from, const QChar* end)
{
    for (const QChar* at = from;; ++at) {
        at += plain_prefix(at, static_cast<int>(end - at));
        if (at == end || is_paragraph_end(*at))
            return at;
    }
}

} // namespace

int column_after(Cell cell, int column, int columns)
{
    switch (cell) {
    case Cell::Narrow:
    case Cell::Blank:
        return column + 1;
    case Cell::Wide:
        return column + 2;
    case Cell::Tab:
        return std::max(column,
                        std::min(columns, (column / RowTable::TAB_STOP + 1) * RowTable::TAB_STOP));
    case Cell::Joined:
    case Cell::Newline:
        break;
    }
    return column;
}

RowTable::RowTable(int columns)
    : rows{Row(0, true)}
    , width(columns)
{
}

void RowTable::append(const QString& text)
{
    const QChar* const end = text.constData() + text.size();
    for (const QChar* piece = text.constData(); piece != end;) {
        const QChar* const stop = paragraph_end(piece, end);
        append_piece(piece, static_cast<int>(stop - piece));
        if (stop == end)
            return;
        append_paragraph_end();
        const bool pair =
            *stop == QLatin1Char('\r') && stop + 1 != end && stop[1] == QLatin1Char('\n');
        piece = stop + (pair ? 2 : 1);
    }
}

void RowTable::append_piece(const QChar* text, int count)
{
    cells.append(text, count);
    wrap_last_row();
}

void RowTable::append_paragraph_end()
{
    const QChar separator = QChar::LineFeed;
    cells.append(&separator, 1);
    rows.emplace_back(cells.end(), true);
}

void RowTable::drop_front(int count)
{
    const std::int64_t begin = cells.begin() + count;
    cells.drop_before(begin);
    const auto kept =
        std::lower_bound(rows.begin() + static_cast<std::ptrdiff_t>(front), rows.end(), begin,
                         [](const Row& row, std::int64_t at) { return row.start() < at; });
    front = static_cast<size_t>(kept - rows.begin());
    if (front > rows.size() / 2) {
        rows.erase(rows.begin(), kept);
        front = 0;
    }
    const bool whole =
        front < rows.size() && rows[front].start() == begin && rows[front].opens_paragraph();
    if (whole)
        return;
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(front), Row(begin, true));
    wrap_all();
}

void RowTable::drop_from(int position)
{
    int row = row_of(position);
    cells.drop_from(cells.begin() + position);
    // What was after the position may have decided where the row before it ends.
    if (row > 0 && !rows[front + static_cast<size_t>(row)].opens_paragraph())
        --row;
    rows.resize(front + static_cast<size_t>(row) + 1, Row(0, true));
    wrap_last_row();
}

void RowTable::set_columns(int columns)
{
    if (columns == width)
        return;
    width = columns;
    wrap_all();
}

void RowTable::wrap_last_row()
{
    wrap(rows.back().start(), cells.end());
}

void RowTable::wrap(std::int64_t start, std::int64_t end)
{
    PlainRun run;
    while (start < end) {
        if (start >= run.end)
            run = cells.plain_run(start);
        const bool plain = std::min(start + width + 1, end) <= run.end;
        start = plain ? plain_row_break(run, start, end, width)
                      : uneven_row_break(cells, start, end, width);
        if (start < end)
            rows.emplace_back(start, false);
    }
}

void RowTable::wrap_all()
{
    std::vector<Row> old;
    old.swap(rows);
    rows.reserve(old.size() - front);
    for (size_t i = front; i < old.size();) {
        rows.push_back(old[i]);
        size_t next = i + 1;
        while (next < old.size() && !old[next].opens_paragraph())
            ++next;
        const std::int64_t end = next < old.size() ? old[next].start() - 1 : cells.end();
        wrap(old[i].start(), end);
        i = next;
    }
    front = 0;
}

int RowTable::row_start(int row) const
{
    return static_cast<int>(rows[front + static_cast<size_t>(row)].start() - cells.begin());
}

int RowTable::row_end(int row) const
{
    const size_t next = front + static_cast<size_t>(row) + 1;
    if (next == rows.size())
        return length();
    const std::int64_t separator = rows[next].opens_paragraph() ? 1 : 0;
    return static_cast<int>(rows[next].start() - cells.begin() - separator);
}

int RowTable::row_of(int position) const
{
    const std::int64_t wanted = cells.begin() + position;
    const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(front);
    const auto after =
        std::upper_bound(begin, rows.end(), wanted,
                         [](std::int64_t at, const Row& row) { return at < row.start(); });
    return static_cast<int>(after - begin) - 1;
}

int RowTable::column_of(int row, int position) const
{
    int column = 0;
    for (int at = row_start(row); at < position; ++at)
        column = column_after(cell(at), column, width);
    return column;
}
