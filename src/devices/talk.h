// Talks without being asked: lines, bytes or hexadecimal text, at a rate or as fast as they are
// taken.
#pragma once

#include "devices/device.h"
#include "devices/faults.h"
#include "devices/talktext.h"

#include <cstdint>

class Talk : public Device
{
public:
    Talk(const TalkSettings& settings, const FaultSettings& faults);

    // What is said to it goes unheard.
    int room() const override;
    void receive(const QByteArray&, Time) override {}
    QByteArray transmit(int most, Time now) override;
    Time next_wake(Time now) const override;

    // The first listener hears the text from its start.
    bool waits_for_listener() const override { return true; }

private:
    int portion() const;

    TalkSettings settings;
    TalkText text;
    Faults faults;
    std::chrono::nanoseconds portion_time; // from the start of one portion to that of the next
    std::int64_t sent = 0;
    Time next_portion{}; // when the next one is due
    QByteArray started;  // what is left of the portion that is going out
};
