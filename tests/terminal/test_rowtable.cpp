#include "rowtable.h"

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

int random_position(std::mt19937& random, const QString& text)
{
    int position = int(random() % unsigned(text.size() + 1));
    while (position < text.size() && text[position].isLowSurrogate())
        ++position;
    return position;
}

} // namespace

TEST(RowTable, WrapsWordsBlanksAndWideCharacters)
{
    const QString wide(QChar(0x56FD)), mark(QChar(0x301));
    const struct
    {
        QString text;
        int columns;
        std::vector<SlowRow> rows;
    } table[] = {
        {"", 4, {{0, 0}}},
        {"\n", 4, {{0, 0}, {1, 1}}},
        {"abcdefghi", 4, {{0, 4}, {4, 8}, {8, 9}}},
        {"ab cdef", 4, {{0, 3}, {3, 7}}},
        {"41 42 43 44 ", 5, {{0, 6}, {6, 12}}}, // the blank may stand past the edge
        {"abcd  e", 4, {{0, 5}, {5, 7}}},       // the second one may not
        {"a" + wide + wide, 4, {{0, 2}, {2, 3}}},
        {wide, 1, {{0, 1}}}, // something has to be in a row
        {"abc" + mark + "d" + mark + "e", 4, {{0, 6}, {6, 7}}},
        {"a\tb\tc", 10, {{0, 4}, {4, 5}}},
        {QString("ab") + QChar(QChar::LineSeparator) + "cd", 4, {{0, 3}, {3, 5}}},
        {mark.repeated(20), 2, {{0, 16}, {16, 20}}}, // a row of marks isn't endless
    };
    for (const auto& row : table) {
        RowTable rows(row.columns);
        rows.append(row.text);
        EXPECT_EQ(rows_of(rows), row.rows) << row.text.toStdString();
        EXPECT_EQ(slow_rows(row.text, row.columns), row.rows) << row.text.toStdString();
    }
}

TEST(RowTable, StaysEqualToASlowWrappingThroughRandomChanges)
{
    constexpr int MOST_TEXT = 12000; // some pages of cells
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        RowTable table(40);
        QString text;
        for (int step = 0; step < 150; ++step) {
            const unsigned kind = random() % 12;
            if (text.size() > MOST_TEXT || kind == 0) {
                const int end = text.indexOf('\n', random_position(random, text));
                const int count = end < 0 || kind == 1 ? random_position(random, text) : end + 1;
                table.drop_front(count);
                text.remove(0, count);
            } else if (kind == 1) {
                const int position = random_position(random, text);
                table.drop_from(position);
                text.truncate(position);
            } else if (kind == 2) {
                table.set_columns(1 + int(random() % 100));
            } else if (kind == 3) {
                table.append_paragraph_end();
                text += '\n';
            } else {
                const QString more =
                    random_text(random, int(random() % 900), seed % 2 == 0 && random() % 2 == 0);
                table.append(more);
                text += with_plain_breaks(more);
            }
            ASSERT_EQ(table.length(), text.size()) << "seed " << seed << ", step " << step;
            ASSERT_EQ(rows_of(table), slow_rows(text, table.columns()))
                << "seed " << seed << ", step " << step;
        }
    }
}

TEST(RowTable, FindsTheRowAndColumnOfAPosition)
{
    std::mt19937 random(7);
    const QString text = with_plain_breaks(random_text(random, 6000, true));
    RowTable table(33);
    table.append(text);
    int row = 0;
    for (int at = 0; at < text.size(); ++at) {
        if (row + 1 < table.row_count() && table.row_start(row + 1) == at)
            ++row;
        ASSERT_EQ(table.row_of(at), row) << at;
        ASSERT_EQ(table.column_of(row, at), slow_column(text, table.row_start(row), at, 33)) << at;
    }
}
