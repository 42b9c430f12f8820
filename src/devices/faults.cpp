#include "devices/faults.h"

#include <algorithm>
#include <utility>

Faults::Faults(const FaultSettings& settings)
    : settings(settings)
    , random(settings.seed)
{
}

bool Faults::pass_frame(QByteArray& frame)
{
    if (happens(settings.drop))
        return false;
    if (!frame.isEmpty() && happens(settings.corrupt))
        turn_a_bit(frame.data()[random() % std::uint64_t(frame.size())]);
    return true;
}

bool Faults::count_frame()
{
    if (silent())
        return false;
    ++units_sent;
    return true;
}

void Faults::send_bytes(QByteArray& bytes)
{
    if (settings.silent_after >= 0) {
        const std::int64_t left = std::max<std::int64_t>(0, settings.silent_after - units_sent);
        bytes.truncate(int(std::min<std::int64_t>(bytes.size(), left)));
    }
    units_sent += bytes.size();
    if (settings.drop <= 0 && settings.corrupt <= 0 && settings.twice <= 0 && settings.reorder <= 0)
        return;
    QByteArray arriving;
    for (char byte : qAsConst(bytes)) {
        if (happens(settings.drop))
            continue;
        if (happens(settings.corrupt))
            turn_a_bit(byte);
        if (overtaken.isEmpty() && reorders()) {
            overtaken += byte;
            continue;
        }
        arriving += QByteArray(doubles() ? 2 : 1, byte) + std::exchange(overtaken, {});
    }
    bytes = arriving;
}

std::chrono::milliseconds Faults::next_delay()
{
    const bool held_back = settings.delay.count() > 0 && happens(settings.delay_chance);
    return held_back ? settings.delay : std::chrono::milliseconds(0);
}

bool Faults::silent() const
{
    return settings.silent_after >= 0 && units_sent >= settings.silent_after;
}

// Drawn from the generator's raw numbers: the distributions of the standard library differ from one
// implementation to the next, and a seed must mean the same everywhere.
bool Faults::happens(double chance)
{
    constexpr double STEPS = 9007199254740992.0; // 2^53, as many as a double distinguishes
    return chance > 0 && double(random() >> 11) < chance * STEPS;
}

void Faults::turn_a_bit(char& byte)
{
    byte = char(byte ^ (1 << (random() % 8)));
}
