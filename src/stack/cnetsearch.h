// What a search for cnet devices asks and finds, for the programs that show it.
#pragma once

#include "tools/cnetcfg.h"

#include <functional>

struct CnetSearchSettings
{
    std::uint32_t channels = 0; // masks, as in cnet_pairs()
    std::uint32_t rates = 0;
    QByteArray target; // empty: everybody is asked
    bool long_answers = false;
};

// Calls `found` for short and long answers alike, on the search's own thread.
void on_cnet_found(
    CnetCfg& cfg,
    const std::function<void(int channel, int rate, const QByteArray& answer)>& found);
