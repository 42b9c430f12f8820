#include "linkcfg/option.h"
#include "sandbox.h"
#include "terminal/stringrow.h"

#include <QSpinBox>
#include <gtest/gtest.h>

namespace {

struct Settings : testing::Test
{
    Sandbox sandbox;
    const QString path = sandbox.path("file.ini");
    QSettings file = QSettings(path, QSettings::IniFormat);
};

} // namespace

TEST_F(Settings, AnOptionIsBoundByItsWidgetAndStoredWhenItDiffers)
{
    QSpinBox box; // 0 to 99
    int field = 7;
    QObject::connect(&box, QOverload<int>::of(&QSpinBox::valueChanged),
                     [&](int value) { field = value; });
    const Option option(Setting<int>{"key", 5}, &box, &field);
    const std::tuple<const char*, int, int, const char*> rows[] = {
        {"", 5, 5, ""}, {"150", 99, 99, "99"}, {"200", 99, 200, "99"}, {"8", 8, 8, "8"}};
    for (const auto& [stored, shown, mirrored, stored_after] : rows) {
        if (*stored)
            file.setValue("key", stored);
        option.load(file);
        EXPECT_EQ(box.value(), shown) << stored;
        EXPECT_EQ(field, mirrored) << stored; // no slot runs where the widget keeps its value
        option.store(file);
        EXPECT_EQ(file.value("key").toString(), stored_after) << stored;
    }
}

TEST_F(Settings, RowsComeBackAsTheyWereAndACountIsBelievedUpToALimit)
{
    const std::vector<StringRow> rows = {{true, "a", false, "x"}, {}, {false, "", true, ", @\""}};
    EXPECT_FALSE(string_rows_are_stored(file, rows));
    string_rows_write(file, rows);
    EXPECT_EQ(file.allKeys().join(' '), "strings/1/alias strings/1/in_turn strings/1/value "
                                        "strings/3/ishex strings/3/value strings/size");
    EXPECT_TRUE(string_rows_are_stored(file, rows));
    for (const StringRow& other : {StringRow{true, "", true, ", @\""},
                                   {false, "a", true, ", @\""},
                                   {false, "", false, ", @\""},
                                   {false, "", true, "x"}})
        EXPECT_FALSE(string_rows_are_stored(file, {rows[0], rows[1], other}));
    for (const int claimed : {100001, 3, 2, 0, -5}) {
        file.setValue("strings/size", claimed);
        const std::size_t kept = claimed > 100000 ? 3 : std::size_t(qMax(0, claimed));
        EXPECT_TRUE(string_rows_read(file) ==
                    std::vector<StringRow>(rows.begin(), rows.begin() + int(kept)));
        EXPECT_EQ(string_rows_are_stored(file, rows), claimed == 3) << claimed;
    }
}

TEST(StringRows, TakeTurns)
{
    const std::tuple<QString, int, int> cases[] = {
        {".x.x", 0, 1}, {".x.x", 2, 3}, {"...x", 4, 3},    {"x...", 1, 0},
        {".x", 9, 1},   {"..", 1, -1},  {QString(), 0, -1}};
    for (const auto& [rows, from, expected] : cases) {
        const QString marks = rows;
        int cursor = from;
        EXPECT_EQ(next_in_turn(cursor, marks.size(), [&](int row) { return marks[row] == 'x'; }),
                  expected);
        EXPECT_EQ(cursor, expected < 0 ? from : expected + 1);
    }
}
