#include "terminal/rowtable.h"

#include "slowrows.h"

#include <gtest/gtest.h>

namespace {

std::vector<SlowRow> rows_of(const RowTable& table)
{
    std::vector<SlowRow> rows;
    for (int row = 0; row < table.row_count(); ++row)
        rows.push_back({table.row_start(row), table.row_end(row)});
    return rows;
}

} // namespace

TEST(RowTable, WrapsWordsBlanksAndWideCharacters)
{
    const QString wide(QChar(0x56FD)), mark(QChar(0x301));
    const std::tuple<QString, int, std::vector<SlowRow>> table[] = {
        {"", 4, {{0, 0}}},
        {"\n", 4, {{0, 0}, {1, 1}}},
        {"abcdefghi", 4, {{0, 4}, {4, 8}, {8, 9}}},
        {"ab cdef", 4, {{0, 3}, {3, 7}}},
        {"41 42 43 44 ", 5, {{0, 6}, {6, 12}}}, // the blank may be past the edge
        {"abcd  e", 4, {{0, 5}, {5, 7}}},       // the second one may not
        {"a" + wide + wide, 4, {{0, 2}, {2, 3}}},
        {wide, 1, {{0, 1}}}, // something has to be in a row
        {"abc" + mark + "d" + mark + "e", 4, {{0, 6}, {6, 7}}},
        {"a\tb\tc", 10, {{0, 4}, {4, 5}}},
        {QString("ab") + QChar(QChar::LineSeparator) + "cd", 4, {{0, 3}, {3, 5}}},
        {mark.repeated(20), 2, {{0, 16}, {16, 20}}}, // a row of marks isn't endless
    };
    for (const auto& [text, columns, rows] : table) {
        RowTable wrapped(columns);
        wrapped.append(text);
        EXPECT_EQ(rows_of(wrapped), rows) << text.toStdString();
        EXPECT_EQ(slow_rows(text, columns), rows) << text.toStdString();
    }
}

TEST(RowTable, CountsEachLineBreakAsADocumentDoes)
{
    RowTable table(4);
    table.append(
        QString("a\r\nb\rc%1d%2").arg(QChar(QChar::ParagraphSeparator)).arg(QChar(0xFDD0)));
    EXPECT_EQ(rows_of(table), (std::vector<SlowRow>{{0, 1}, {2, 3}, {4, 5}, {6, 7}, {8, 8}}));
}
