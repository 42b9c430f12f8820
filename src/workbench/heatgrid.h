// Where the cells of a heat map are in a rectangle: channels from left to right, a row for each
// rate, with room for the names of both. A value without a window.
#pragma once

#include "tools/cnetframe.h"

#include <QRect>

class HeatGrid
{
public:
    HeatGrid() = default;
    // `names` is the room for the name of a rate, on the left, and of a channel, at the bottom.
    HeatGrid(const QSize& area, const QSize& names);

    QRect cell(int channel, int rate) const;
    QRect rate_name(int rate) const;
    QRect channel_name(int channel) const;
    // The pair whose cell is at this place; false for none.
    bool pair_at(const QPoint& place, CnetPair& pair) const;

private:
    int left = 0;
    int bottom = 0; // height of the names there
    int width = 1;  // of a cell
    int height = 1;
};
