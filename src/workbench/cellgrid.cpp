#include "workbench/cellgrid.h"

#include <algorithm>

CellGrid::CellGrid(int count, const QSize& area)
    : cells(count)
{
    for (side = LARGEST; side > SMALLEST; --side) {
        across = std::max(1, area.width() / side);
        if (height() <= area.height())
            return;
    }
    across = std::max(1, area.width() / side);
}

int CellGrid::height() const
{
    return (cells + across - 1) / across * side;
}

QRect CellGrid::cell(int index) const
{
    return {index % across * side, index / across * side, side, side};
}

int CellGrid::cell_at(const QPoint& place) const
{
    const int column = place.x() / side;
    if (place.x() < 0 || place.y() < 0 || column >= across)
        return -1;
    const int index = place.y() / side * across + column;
    return index < cells ? index : -1;
}
