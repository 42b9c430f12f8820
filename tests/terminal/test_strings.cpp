#include "terminal/stringcolumns.h"
#include "windowtest.h"

#include <QDockWidget>

namespace {

class Strings : public WindowTest
{
protected:
    Strings()
    {
        window_start();
        EXPECT_TRUE(port_open());
        set("spinBox_send_in_turn_interval", 1);
    }
    bool running() const { return checked("checkBox_send_in_turn"); }
    bool run_to_end()
    {
        check("checkBox_send_in_turn");
        return wait_until([this] { return !running(); });
    }
    void click_send(int row)
    {
        const QRect cell = table()->visualItemRect(table()->item(row, OPERATION_COLUMN));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QString texts(int column) const
    {
        QString all;
        for (int row = 0; row < table()->rowCount(); ++row)
            all += table()->item(row, column)->text();
        return all;
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
    const std::pair<int, QByteArray> rounds[] = {
        {101, (text + hex).repeated(50) + text}, {3, text + hex + text}, {-1, text}};
    for (const auto& [limit, wire] : rounds) {
        set("spinBox_send_count", limit);
        ASSERT_TRUE(run_to_end());
        EXPECT_EQ(pty.read(wire.size()), wire);
        EXPECT_TRUE(counters().startsWith(QString("CNT: %1 ").arg(qAbs(limit))));
    }
    EXPECT_EQ(pty.read_now(), "");
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Strings, FollowsChangesWhileItRuns)
{
    set_row(0, true, false, "a");
    set_row(1, true, false, "b");
    check("checkBox_send_in_turn");
    ASSERT_EQ(pty.read(2), "ab");
    QByteArray wire;
    while (table()->rowCount() > 1)
        table()->removeRow(0);
    set_row(0, true, false, "c");
    EXPECT_TRUE(wait_until([&] { return (wire += pty.read_now()).endsWith("ccc"); }));
    check("checkBox_loop");
    EXPECT_FALSE(running());
}

TEST_F(Strings, EndsWithOneMessage)
{
    const QString nothing = "note|No strings found in list";
    const std::tuple<const char*, std::function<void()>, QString> cases[] = {
        {"nothing marked", [&] { set_row(0, false, false, "text"); }, nothing},
        {"nothing in the marked row", [&] { set_row(0, true, false, ""); }, nothing},
        {"a bad string", [&] { set_row(0, true, true, "0x41"); },
         "note|char 'x' at offset 1 is not a hex number"},
        {"no rows", [&] { table()->setRowCount(0); }, nothing},
    };
    for (const auto& [what, prepare, box] : cases) {
        SCOPED_TRACE(what);
        prepare();
        bool running_under_box = false;
        // Long enough for many more ticks, none of which may bring up a box of its own.
        answers.under_box = [&] {
            running_under_box = running();
            QTest::qWait(50);
        };
        ASSERT_TRUE(run_to_end());
        EXPECT_EQ(answers.boxes, QStringList(box));
        EXPECT_EQ(running_under_box, box != nothing);
        answers.boxes.clear();
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Strings, SendsARowByAClickOnItsFirstCell)
{
    click("pushButton_extend");
    set_row(0, false, true, "41 42");
    set_row(1, false, false, R"(bad\q)");
    click_send(3);
    for (const int column : {ALIAS_COLUMN, VALUE_COLUMN})
        emit table()->cellClicked(0, column);
    EXPECT_EQ(typed(), "");
    click_send(0);
    EXPECT_EQ(pty.read(2), "AB");
    click_send(1);
    EXPECT_EQ(counters(), "CNT: 1 TX: 2 RX: 0");

    click("pushButton_open");
    click_send(0);
    EXPECT_EQ(typed(), "41 42");
    EXPECT_EQ(answers.boxes, QStringList({"note|format error at 4: q", "note|port not opened"}));
}

TEST_F(Strings, MovesAddsAndDeletesRows)
{
    click("pushButton_extend");
    table()->setRowCount(0);
    const char *const add = "pushButton_table_row_add", *const del = "pushButton_table_row_del",
                      *const up = "pushButton_table_row_up",
                      *const down = "pushButton_table_row_down";
    const struct
    {
        const char* button;
        int current; // current row at first; -1 for none, -2 for where the last step left it
        const char* texts;
        int current_after;
    } steps[] = {
        {del, -1, "", -1},     {up, -1, "", -1},      {down, -1, "", -1},   {add, -1, "a", 0},
        {add, -2, "ab", 1},    {add, -2, "abc", 2},   {add, 0, "adbc", 1},  {down, -2, "abdc", 2},
        {down, -2, "abcd", 3}, {down, -2, "abcd", 3}, {up, -2, "abdc", 2},  {up, 1, "badc", 0},
        {up, -2, "badc", 0},   {del, 1, "bdc", 1},    {add, -1, "ebdc", 0},
    };
    char next = 'a';
    for (const auto& step : steps) {
        SCOPED_TRACE(step.texts);
        if (step.current > -2)
            table()->setCurrentCell(step.current, step.current < 0 ? -1 : VALUE_COLUMN);
        click(step.button);
        if (step.button == add) {
            for (const int column : {ALIAS_COLUMN, VALUE_COLUMN})
                table()->item(table()->currentRow(), column)->setText(QString(next));
            ++next;
        }
        EXPECT_EQ(texts(VALUE_COLUMN), step.texts);
        EXPECT_EQ(texts(ALIAS_COLUMN), step.texts);
        EXPECT_EQ(table()->currentRow(), step.current_after);
    }
    EXPECT_EQ(table()->item(0, OPERATION_COLUMN)->flags(), Qt::ItemIsEnabled);
}

TEST_F(Strings, HidesItsPanelAtEveryStart)
{
    for (int start = 0; start < 2; ++start) {
        EXPECT_FALSE(find<QDockWidget>("dockWidget_extend")->isVisible());
        EXPECT_EQ(label("pushButton_extend"), "&extend<<");
        click("pushButton_extend");
        EXPECT_TRUE(find<QDockWidget>("dockWidget_extend")->isVisible());
        EXPECT_EQ(label("pushButton_extend"), "&hide>>");
        window_end();
        window_start();
    }
}
