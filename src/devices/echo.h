// Sends back every byte, in order, none lost: what it can't pass on yet it doesn't take.
#pragma once

#include "devices/device.h"
#include "devices/faults.h"
#include "devices/portion.h"

class Echo : public Device
{
public:
    explicit Echo(const FaultSettings& faults);

    int room() const override;
    void receive(const QByteArray& bytes, Time now) override;
    QByteArray transmit(int most, Time now) override;
    Time next_wake(Time now) const override;

private:
    Faults faults;
    std::deque<Portion> waiting;
    int held = 0; // bytes in `waiting`
};
