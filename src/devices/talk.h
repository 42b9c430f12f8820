// Talks without being asked: lines, bytes or hexadecimal text, at a rate or as fast as they are
// taken. The text depends on the seed alone, so a listener can check it.
#pragma once

#include "devices/device.h"
#include "devices/faults.h"

#include <random>

enum class TalkForm {
    Lines,  // numbered lines of printable ASCII, ended by CR LF
    Binary, // bytes of all values
    Hex,    // pairs of hexadecimal digits split by blanks, no line breaks
};

struct TalkSettings
{
    TalkForm form = TalkForm::Lines;
    double rate = 10;     // lines a second, else bytes a second; 0 for as fast as they are taken
    int line_length = 72; // bytes in a line, its CR LF included
    int size = 0;         // bytes sent at a time, with silence after them; 0 for a steady stream
    qint64 bytes = -1;    // bytes in all; negative for no end
    quint64 seed = 1;
};

constexpr int SHORTEST_LINE = 12; // the number, a blank, one letter and CR LF

// The endless text of these settings, from its start.
class TalkText
{
public:
    explicit TalkText(const TalkSettings& settings);
    QByteArray next(int count);

private:
    void write_more();

    TalkForm form;
    int line_length;
    std::mt19937_64 random;
    qint64 line_number = 0;
    QByteArray ready;
};

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
    qint64 sent = 0;
    Time next_portion{}; // when the next one is due
    QByteArray started;  // what is left of the portion that is going out
};
