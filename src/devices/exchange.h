// Puts a module on the line: finds its requests in what arrives, sends its replies in time, and
// lets the faults happen to both.
#pragma once

#include "devices/faults.h"
#include "devices/module.h"
#include "devices/portion.h"

#include <QByteArrayList>
#include <cstdint>
#include <memory>

struct ExchangeSettings
{
    int baud = 0;                             // of the line, bits/s; 0 for no pace
    std::chrono::milliseconds start_time{50}; // ignores input for so long after a reset
    std::int64_t reboot_after = -1;           // the request that meets a failing supply; one time
    std::int64_t cut_after = -1;              // the request at which the line is cut; one time
    std::chrono::milliseconds pause{5};       // within a request, at least
};

class Exchange : public Device
{
public:
    Exchange(std::unique_ptr<Module> module, const ExchangeSettings& settings,
             const FaultSettings& faults, Journal journal = {});

    int room() const override;
    void receive(const QByteArray& bytes, Time now) override;
    void line_idle(Time now) override;
    QByteArray transmit(int most, Time now) override;
    Time next_wake(Time now) const override;
    bool wants_cut() override;

    // From now on nothing goes wrong any more.
    void end_faults();

private:
    void hear_requests(Time now, bool silence);
    void handle(const QByteArray& request, Time now);
    void answer(const QByteArray& request, Time now);
    void send(const std::vector<Reply>& replies, Time now);
    void queue_reply(const QByteArray& bytes, Time due);
    void put_out(const QByteArray& frame, Time due);
    QByteArrayList carry(QByteArray frame, QByteArray& overtaken);
    void restart(Time now);
    void tell(const char* what, const QByteArray& frame = {}) const;

    std::unique_ptr<Module> module;
    ExchangeSettings settings;
    Faults faults;
    Journal journal;
    std::chrono::nanoseconds longest_pause; // within a request
    QByteArray heard;
    Time last_heard{};
    bool silence_told = false; // the module knows that `heard` is followed by silence
    std::int64_t requests = 0;
    QByteArray overtaken_request; // waits for the next one, after which it arrives
    QByteArray overtaken_reply;
    std::deque<Portion> outgoing; // by their times
    Time in_turn{};               // when the last reply in its turn goes out
    Time deaf_until{};
    bool cut_due = false;
};
