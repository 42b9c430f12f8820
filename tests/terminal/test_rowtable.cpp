#include "terminal/rowtable.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using Rows = std::vector<std::pair<int, int>>; // first position, and that after the last one

Rows rows_of(const QString& text, int columns)
{
    RowTable table(columns);
    table.append(text);
    Rows rows;
    for (int row = 0; row < table.row_count(); ++row)
        rows.emplace_back(table.row_start(row), table.row_end(row));
    return rows;
}

} // namespace

TEST(RowTable, WrapsWordsBlanksAndWideCharacters)
{
    const QString wide(QChar(0x56FD)), mark(QChar(0x301)), face = QString::fromUtf8("\U0001F600");
    const std::tuple<QString, int, Rows> table[] = {
        {"", 4, {{0, 0}}},
        {"\n", 4, {{0, 0}, {1, 1}}},
        {"abcdefghi", 4, {{0, 4}, {4, 8}, {8, 9}}},
        {"ab cdef", 4, {{0, 3}, {3, 7}}},
        {"41 42 43 44 ", 5, {{0, 6}, {6, 12}}}, // the blank may be past the edge
        {"abcd  e", 4, {{0, 5}, {5, 7}}},       // the second one may not
        {"a" + wide + wide, 4, {{0, 2}, {2, 3}}},
        {face + "ab" + face, 4, {{0, 4}, {4, 6}}},
        {"a b" + wide, 4, {{0, 3}, {3, 4}}}, // a wide character parts words
        {wide + "abc", 4, {{0, 1}, {1, 4}}},
        {wide, 1, {{0, 1}}}, // something has to be in a row
        {"abc" + mark + "d" + mark + "e", 4, {{0, 6}, {6, 7}}},
        {"a\tb\tc", 10, {{0, 4}, {4, 5}}}, // the second tab goes to the edge only
        {"\t\tab", 16, {{0, 2}, {2, 4}}},
        {"ab\u2028cd", 4, {{0, 3}, {3, 5}}},
        {mark.repeated(20), 2, {{0, 16}, {16, 20}}}, // a row of marks isn't endless
        {"a\r\nb\rc\u2029d" + QString(QChar(0xFDD0)), 4, {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {8, 8}}},
    };
    for (const auto& [text, columns, rows] : table)
        EXPECT_EQ(rows_of(text, columns), rows) << text.toStdString();
}

TEST(RowTable, WrapsLongPlainTextAsASlowSearchForBlanks)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const int columns = 1 + int(random() % 150);
        QString text;
        while (text.size() < int(seed % 3) * 4000 + 3500)
            text += QString(int(random() % 12 * random() % 12), 'x') + ' ';
        Rows slow;
        for (int start = 0; start < text.size(); start = slow.back().second) {
            const int edge = start + columns;
            const int blank = text.lastIndexOf(' ', edge);
            slow.emplace_back(start, edge >= text.size() ? text.size()
                                     : blank < start     ? edge
                                                         : blank + 1);
        }
        ASSERT_EQ(rows_of(text, columns), slow) << "seed " << seed;
        slow.emplace_back(text.size() + 1, text.size() + 2);
        ASSERT_EQ(rows_of(text + "\n\t", columns), slow) << "with a tab on the last page";
    }
}
