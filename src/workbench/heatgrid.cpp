#include "workbench/heatgrid.h"

#include <algorithm>

namespace {
constexpr int TALLEST = 40; // px; beyond, a cell only looks empty
}

HeatGrid::HeatGrid(const QSize& area, const QSize& names)
    : left(names.width())
    , bottom(names.height())
    , width(std::max(1, (area.width() - names.width()) / CNET_CHANNELS))
    , height(std::clamp((area.height() - names.height()) / CNET_RATES, 1, TALLEST))
{
}

QRect HeatGrid::cell(int channel, int rate) const
{
    return {left + (channel - CNET_FIRST_CHANNEL) * width, rate * height, width, height};
}

QRect HeatGrid::rate_name(int rate) const
{
    return {0, rate * height, left, height};
}

QRect HeatGrid::channel_name(int channel) const
{
    const QRect above = cell(channel, CNET_RATES - 1);
    return {above.left(), above.bottom() + 1, width, bottom};
}

bool HeatGrid::pair_at(const QPoint& place, CnetPair& pair) const
{
    if (place.x() < left || place.y() < 0)
        return false;
    const int column = (place.x() - left) / width;
    const int row = place.y() / height;
    if (column >= CNET_CHANNELS || row >= CNET_RATES)
        return false;
    pair = {CNET_FIRST_CHANNEL + column, row};
    return true;
}
