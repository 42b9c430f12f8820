// Cells of equal size in rows, as many and as large as a rectangle holds: a value without a window.
#pragma once

#include <QRect>

class CellGrid
{
public:
    static constexpr int SMALLEST = 5; // px; below, a cell shows no colour
    static constexpr int LARGEST = 26; // px

    CellGrid() = default;
    // The largest cells with which `count` fit into the area. When even the smallest don't, they
    // go on below it.
    CellGrid(int count, const QSize& area);

    int count() const { return cells; }
    int columns() const { return across; }
    int cell_size() const { return side; }
    // The height that all rows take.
    int height() const;
    QRect cell(int index) const;
    // The cell at this place; -1 for none.
    int cell_at(const QPoint& place) const;

private:
    int cells = 0;
    int across = 1;
    int side = LARGEST;
};
