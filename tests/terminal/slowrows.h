// A second way to wrap text, by trying all lengths of a row: slow, but short enough to be believed.
#pragma once

#include <QString>
#include <ostream>
#include <random>
#include <vector>

struct SlowRow
{
    int start;
    int end; // behind the last character, without a line break

    bool operator==(const SlowRow& other) const { return start == other.start && end == other.end; }
};

inline void PrintTo(const SlowRow& row, std::ostream* out)
{
    *out << row.start << ".." << row.end;
}

enum class SlowKind { narrow, blank, tab, wide, mark, line_end };

// Knows the characters that random_text makes, and no others.
SlowKind slow_kind(const QString& text, int at);

// Cells that the characters of [start, at) take in a row of `columns`.
int slow_column(const QString& text, int start, int at, int columns);

// The rows of a text whose paragraphs are parted by '\n'.
std::vector<SlowRow> slow_rows(const QString& text, int columns);

// Paragraphs of words, blanks, tabs, wide and combining characters and line separators, or, if not
// `uneven`, of words and blanks.
QString random_text(std::mt19937& random, int length, bool uneven);

// The paragraphs that a QTextDocument makes of inserted text.
QString with_plain_breaks(QString text);
