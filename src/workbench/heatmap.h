// What a search over channels and rates has found so far: a value without a window.
#pragma once

#include "tools/cnetframe.h"

#include <array>
#include <cstdint>

enum class HeatState { Outside, Waiting, Searching, Searched };

class HeatMap
{
public:
    static constexpr int CELLS = CNET_CHANNELS * CNET_RATES;

    // Nothing is searched.
    HeatMap() = default;
    // The pairs of these masks wait, the others are outside; bits as in cnet_pairs().
    HeatMap(std::uint32_t channels, std::uint32_t rates);

    // Channels from CNET_FIRST_CHANNEL on, rates from 0 on.
    HeatState state(int channel, int rate) const { return cell(channel, rate).state; }
    // Devices that answered there.
    int found(int channel, int rate) const { return cell(channel, rate).found; }
    int count_of(HeatState state) const;

    // The search has come to this pair, and is done with the one before.
    void enter(int channel, int rate);
    void found_add(int channel, int rate);
    // The search has ended. A pair that it broke off waits again, unless somebody answered.
    void end(bool complete);

private:
    struct Cell
    {
        HeatState state = HeatState::Outside;
        int found = 0;
    };
    static bool inside(int channel, int rate);
    static std::size_t index(int channel, int rate);
    const Cell& cell(int channel, int rate) const { return cells[index(channel, rate)]; }
    void leave(HeatState state);

    std::array<Cell, CELLS> cells = {};
};
