// The text of the device that talks. It depends on the seed alone, so a listener can check it.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <random>

enum class TalkForm {
    Lines,  // numbered lines of printable ASCII, ended by CR LF
    Binary, // bytes of all values
    Hex,    // pairs of hexadecimal digits split by blanks, no line breaks
};

struct TalkSettings
{
    TalkForm form = TalkForm::Lines;
    double rate = 10;        // lines a second, else bytes a second; 0 for as fast as they are taken
    int line_length = 72;    // bytes in a line, its CR LF included
    int size = 0;            // bytes sent at a time, with silence after them; 0 for a steady stream
    std::int64_t bytes = -1; // bytes in all; negative for no end
    std::uint64_t seed = 1;
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
    std::int64_t line_number = 0;
    QByteArray ready;
};
