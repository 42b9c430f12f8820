// Sends what was received in a capture, each piece at its time.
#pragma once

#include "devices/capturedport.h"
#include "devices/faults.h"

struct ReplaySettings
{
    double speed = 1;                         // 2 for half the time; 0 for as fast as it is taken
    std::chrono::milliseconds most_silence{}; // longer ones are cut to it; 0 for none
};

// Time begins with the port's first record, when the first listener comes. A listener that is late
// by more than LATE_MOST, as one that has gone for a while, moves all that follows.
class Replay : public Device
{
public:
    static constexpr std::chrono::milliseconds LATE_MOST{200};

    // Throws std::runtime_error when nothing was received. What happens is reported in `notes`.
    Replay(std::unique_ptr<CapturedPort> port, const ReplaySettings& settings,
           const FaultSettings& faults, Journal notes);

    // What is said to it goes unheard.
    int room() const override;
    void receive(const QByteArray&, Time) override {}
    QByteArray transmit(int most, Time now) override;
    Time next_wake(Time now) const override;

    bool waits_for_listener() const override { return true; }

private:
    void read_next();
    std::chrono::nanoseconds played(std::chrono::nanoseconds recorded) const;

    const std::unique_ptr<CapturedPort> port;
    const ReplaySettings settings;
    Faults faults;
    Journal notes;
    std::optional<CapturedPiece> piece; // the next one
    std::chrono::nanoseconds due{0};    // when it is, since the start
    std::chrono::nanoseconds last_recorded{0};
    std::optional<Time> start;
    QByteArray started; // what is left of the piece that is going out
};
