// A second way to wrap text, by trying all lengths of a row: slow, but short enough to be believed.
#pragma once

#include <QString>
#include <ostream>
#include <random>
#include <vector>

struct SlowRow
{
    int start;
    int end; // after the last character, without a line break

    bool operator==(const SlowRow& other) const { return start == other.start && end == other.end; }
};

inline void PrintTo(const SlowRow& row, std::ostream* out)
{
    *out << row.start << ".." << row.end;
}

// The rows of a text whose paragraphs are parted by '\n' and which random_text made.
std::vector<SlowRow> slow_rows(const QString& text, int columns);

// Paragraphs of words, blanks, tabs, wide and combining characters and line separators, or, if not
// `uneven`, of words and blanks.
QString random_text(std::mt19937& random, int length, bool uneven);
