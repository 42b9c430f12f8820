#include "windowtest.h"

namespace {

class Strings : public OpenWindowTest
{
protected:
    Strings()
    {
        set("spinBox_send_in_turn_interval", 1);
        click("pushButton_extend");
    }
    void run_to_end()
    {
        check(IN_TURN);
        EXPECT_TRUE(wait_until([this] { return !checked(IN_TURN); }));
    }
    void click_cell(int row, int column = OPERATION_COLUMN)
    {
        const QRect cell = table()->visualItemRect(table()->item(row, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    }
};

} // namespace

TEST_F(Strings, SendsMarkedRowsOneATickUpToTheLimit)
{
    set_row(0, false, false, "not marked");
    set_row(2, true, false, R"(AT\r\n)");
    set_row(4, true, false, "");
    set_row(5, true, true, "7e 1 FF");
    const QByteArray text = "AT\r\n", hex = "\x7E\x01\xFF";
    for (const auto& [limit, wire] : {std::pair(101, (text + hex).repeated(50) + text),
                                      std::pair(3, text + hex + text), std::pair(-1, text)}) {
        set("spinBox_send_count", limit);
        run_to_end();
        EXPECT_EQ(pty.read(wire.size()), wire);
        EXPECT_TRUE(counters().startsWith(QString("CNT: %1 ").arg(qAbs(limit))));
    }
    EXPECT_EQ(pty.read_now(), "");
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Strings, FollowsChangesWhileItRuns)
{
    set_row(6, true, false, "a");
    set_row(7, true, false, "b");
    check(IN_TURN);
    QByteArray wire = pty.read(2);
    EXPECT_TRUE(wire.startsWith("ab"));
    table()->setRowCount(1);
    set_row(0, true, false, "c");
    EXPECT_TRUE(wait_until([&] { return (wire += pty.read_now()).endsWith("ccc"); }));
    check(LOOP);
    EXPECT_FALSE(checked(IN_TURN));
}

TEST_F(Strings, EndsWithOneMessage)
{
    const QString nothing = "note|No strings found in list";
    const std::tuple<int, bool, const char*, QString> tables[] = {
        {8, false, "not marked", nothing},
        {8, true, "", nothing},
        {8, true, "0x41", "note|char 'x' at offset 1 is not a hex number"},
        {0, true, "", nothing},
    };
    for (const auto& [rows, marked, text, box] : tables) {
        set_row(0, marked, true, text);
        table()->setRowCount(rows);
        // Long enough for many more ticks, none of which may bring up a box of its own.
        answers.under_box = [] { QTest::qWait(50); };
        run_to_end();
        EXPECT_EQ(boxes_taken(), QStringList(box)) << text;
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Strings, SendsARowByAClickOnItsFirstCell)
{
    set_row(0, false, true, "41 42");
    set_row(1, false, false, R"(bad\q)");
    click_cell(3);
    click_cell(0, ALIAS_COLUMN);
    click_cell(0, VALUE_COLUMN);
    EXPECT_EQ(typed(), "");
    click_cell(0);
    EXPECT_EQ(pty.read(2), "AB");
    click_cell(1);
    EXPECT_EQ(counters(), "CNT: 1 TX: 2 RX: 0");
    click(OPEN);
    click_cell(0);
    EXPECT_EQ(typed(), "41 42");
    EXPECT_EQ(answers.boxes, QStringList({"note|format error at 4: q", "note|port not opened"}));
}

TEST_F(Strings, MovesAddsAndDeletesRows)
{
    table()->setRowCount(0);
    constexpr char ADD[] = "pushButton_table_row_add", DELETE[] = "pushButton_table_row_del",
                   UP[] = "pushButton_table_row_up", DOWN[] = "pushButton_table_row_down";
    constexpr int NONE = -1, LAST = -2; // where the last step has left it
    const std::tuple<const char*, int, const char*, int> steps[] = {
        // button, current row before, texts and current row after
        {DELETE, NONE, "", NONE}, {UP, NONE, "", NONE},    {DOWN, NONE, "", NONE},
        {ADD, NONE, "a", 0},      {ADD, LAST, "ab", 1},    {ADD, LAST, "abc", 2},
        {ADD, 0, "adbc", 1},      {DOWN, LAST, "abdc", 2}, {DOWN, LAST, "abcd", 3},
        {DOWN, LAST, "abcd", 3},  {UP, LAST, "abdc", 2},   {UP, 1, "badc", 0},
        {UP, LAST, "badc", 0},    {DELETE, 1, "bdc", 1},   {ADD, NONE, "ebdc", 0},
    };
    char next = 'a';
    for (const auto& [button, before, expected, after] : steps) {
        if (before != LAST)
            table()->setCurrentCell(before, before == NONE ? NONE : VALUE_COLUMN);
        click(button);
        if (button == ADD)
            set_row(table()->currentRow(), false, false, QString(next++));
        QString texts;
        for (int row = 0; row < table()->rowCount(); ++row)
            texts += value(row)->text();
        EXPECT_EQ(texts, expected);
        EXPECT_EQ(table()->currentRow(), after) << expected;
    }
    EXPECT_EQ(table()->item(0, OPERATION_COLUMN)->flags(), Qt::ItemIsEnabled);
}
