// The faults of a bad line, drawn from a seed, so that a failure can be replayed.
#pragma once

#include <QByteArray>
#include <chrono>
#include <cstdint>
#include <random>

struct FaultSettings
{
    double drop = 0;    // chance, 0 to 1, that a unit is lost
    double corrupt = 0; // chance that one bit of a unit is turned
    double twice = 0;   // chance that a unit arrives two times
    double reorder = 0; // chance that a unit arrives after the next one of its direction
    std::chrono::milliseconds delay{0};
    double delay_chance = 1;        // chance that `delay` holds back an answer
    std::int64_t silent_after = -1; // units sent before the device falls silent; negative for never
    std::uint64_t seed = 1;
};

// A unit is a byte for the devices that know no frames (echo, talk) and a frame or a line for the
// others.
class Faults
{
public:
    explicit Faults(const FaultSettings& settings);

    // A frame on the wire, in either direction: false when it is lost, else perhaps changed.
    bool pass_frame(QByteArray& frame);
    // Of a frame that was passed: it arrives after the next one, or two times.
    bool reorders() { return happens(settings.reorder); }
    bool doubles() { return happens(settings.twice); }
    // The device sends a frame: false when it has fallen silent, else the frame is counted.
    bool count_frame();
    // Bytes sent by a device without frames: loses, changes, doubles and swaps some of them.
    void send_bytes(QByteArray& bytes);
    // How much later than usual the next answer is to go out.
    std::chrono::milliseconds next_delay();

    // Nothing will ever be sent again.
    bool silent() const;

private:
    bool happens(double chance);
    void turn_a_bit(char& byte);

    FaultSettings settings;
    std::mt19937_64 random;
    std::int64_t units_sent = 0;
    QByteArray overtaken; // a byte that waits for the next one, or none
};
