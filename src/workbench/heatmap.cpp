#include "workbench/heatmap.h"

#include <algorithm>

HeatMap::HeatMap(std::uint32_t channels, std::uint32_t rates)
{
    for (const CnetPair& pair : cnet_pairs(channels, rates))
        cells[index(pair.chan, pair.baud)].state = HeatState::Waiting;
}

bool HeatMap::inside(int channel, int rate)
{
    return channel >= CNET_FIRST_CHANNEL && channel < CNET_FIRST_CHANNEL + CNET_CHANNELS &&
           rate >= 0 && rate < CNET_RATES;
}

std::size_t HeatMap::index(int channel, int rate)
{
    return std::size_t(rate * CNET_CHANNELS + channel - CNET_FIRST_CHANNEL);
}

int HeatMap::count_of(HeatState state) const
{
    return int(std::count_if(cells.cbegin(), cells.cend(),
                             [state](const Cell& cell) { return cell.state == state; }));
}

void HeatMap::enter(int channel, int rate)
{
    leave(HeatState::Searched);
    if (inside(channel, rate))
        cells[index(channel, rate)].state = HeatState::Searching;
}

void HeatMap::found_add(int channel, int rate)
{
    if (inside(channel, rate))
        ++cells[index(channel, rate)].found;
}

void HeatMap::end(bool complete)
{
    leave(complete ? HeatState::Searched : HeatState::Waiting);
}

void HeatMap::leave(HeatState state)
{
    for (Cell& cell : cells) {
        if (cell.state == HeatState::Searching)
            cell.state = cell.found > 0 ? HeatState::Searched : state;
    }
}
