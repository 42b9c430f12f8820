#include "stringcolumns.h"
#include "windowtest.h"

#include <QDockWidget>
#include <QTableWidget>

namespace {

class Strings : public WindowTest
{
protected:
    void start(bool raw_text = false)
    {
        configure("serial_tool/raw_text", raw_text);
        window_start();
        ASSERT_TRUE(port_open());
        check("checkBox_raw_text", raw_text);
        interval("spinBox_send_in_turn_interval", 1);
    }
    QTableWidget* table() const { return find<QTableWidget>("tableWidget_strings"); }
    void interval(const char* box, int value) { find<QSpinBox>(box)->setValue(value); }
    void set_row(int row, bool marked, bool hex, const QString& text)
    {
        table()->item(row, ALIAS_COLUMN)->setCheckState(marked ? Qt::Checked : Qt::Unchecked);
        table()->item(row, VALUE_COLUMN)->setCheckState(hex ? Qt::Checked : Qt::Unchecked);
        table()->item(row, VALUE_COLUMN)->setText(text);
    }
    bool running() const { return find<QCheckBox>("checkBox_send_in_turn")->isChecked(); }
    bool run_to_end()
    {
        check("checkBox_send_in_turn");
        return wait_until([this] { return !running(); });
    }
    void click_cell(int row, int column)
    {
        const QRect cell = table()->visualItemRect(table()->item(row, column));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QString texts() const
    {
        QString all;
        for (int row = 0; row < table()->rowCount(); ++row) {
            const QString text = table()->item(row, VALUE_COLUMN)->text();
            all += text.isEmpty() ? "." : text;
        }
        return all;
    }
};

} // namespace

TEST_F(Strings, SendsMarkedRowsOneATick)
{
    struct Case
    {
        bool raw;
        QByteArray wire; // of a round
    };
    for (const Case& one :
         {Case{false, "AT\r\n\x7E\x01\xFF"}, Case{true, "AT\\r\\n\x7E\x01\xFF"}}) {
        start(one.raw);
        set_row(0, false, false, "not marked");
        set_row(2, true, false, R"(AT\r\n)");
        set_row(4, true, false, "");
        set_row(5, true, true, "7e 1 FF");
        interval("spinBox_send_count", 1000);
        ASSERT_TRUE(run_to_end());
        const QByteArray wire = one.wire.repeated(500);
        EXPECT_EQ(pty.read(wire.size()), wire);
        EXPECT_EQ(pty.read_now(), "");
        EXPECT_TRUE(status_shows("CNT: 1000"));
        EXPECT_TRUE(find<QCheckBox>("checkBox_hex_mode")->isChecked());
        EXPECT_FALSE(enabled("checkBox_raw_text"));
        EXPECT_TRUE(answers.boxes.isEmpty());
        window_end();
    }
}

TEST_F(Strings, StopsAtItsLimit)
{
    start();
    set_row(1, true, false, "a");
    set_row(7, true, false, "b");
    for (const auto& [limit, wire] : {std::pair(5, "ababa"), std::pair(-1, "a")}) {
        interval("spinBox_send_count", limit);
        ASSERT_TRUE(run_to_end());
        EXPECT_EQ(pty.read(int(strlen(wire))), wire);
        EXPECT_EQ(pty.read_now(), "");
        EXPECT_TRUE(enabled("checkBox_send_file") && enabled("checkBox_auto_send"));
    }
}

TEST_F(Strings, FollowsChangesWhileItRuns)
{
    start();
    set_row(0, true, false, "a");
    set_row(1, true, false, "b");
    check("checkBox_send_in_turn");
    EXPECT_FALSE(enabled("checkBox_send_file") || enabled("checkBox_auto_send"));
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
    start();
    const QString nothing = "note|No strings found in list";
    struct Case
    {
        const char* what;
        std::function<void()> prepare;
        QString box;
    };
    const Case cases[] = {
        {"nothing marked", [&] { set_row(0, false, false, "text"); }, nothing},
        {"nothing in the marked row", [&] { set_row(0, true, false, ""); }, nothing},
        {"a bad string", [&] { set_row(0, true, true, "0x41"); },
         "note|char 'x' at offset 1 is not a hex number"},
        {"no rows", [&] { table()->setRowCount(0); }, nothing},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        one.prepare();
        bool running_under_box = false;
        // Long enough for many more ticks, none of which may bring up a box of its own.
        answers.under_box = [&] {
            running_under_box = running();
            QTest::qWait(50);
        };
        ASSERT_TRUE(run_to_end());
        EXPECT_EQ(answers.boxes, QStringList(one.box));
        EXPECT_EQ(running_under_box, one.box != nothing);
        answers.boxes.clear();
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Strings, SendsARowByAClickOnItsFirstCell)
{
    start();
    click("pushButton_extend");
    set_row(0, false, true, "41 42");
    set_row(1, false, false, R"(bad\q)");
    click_cell(0, VALUE_COLUMN);
    click_cell(0, ALIAS_COLUMN);
    click_cell(3, OPERATION_COLUMN);
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "");
    click_cell(0, OPERATION_COLUMN);
    EXPECT_EQ(pty.read(2), "AB");
    click_cell(1, OPERATION_COLUMN);
    EXPECT_TRUE(status_shows("CNT: 1"));

    click("pushButton_open");
    click_cell(0, OPERATION_COLUMN);
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "41 42");
    EXPECT_EQ(answers.boxes, QStringList({"note|format error at 4: q", "note|port not opened"}));
}

TEST_F(Strings, NeedsAPort)
{
    start();
    set_row(0, true, false, "a");
    check("checkBox_send_in_turn");
    click("pushButton_open"); // its end lets the box be checked again, as auto send's would
    EXPECT_FALSE(running());
    check("checkBox_send_in_turn");
    EXPECT_FALSE(running());
    EXPECT_EQ(answers.boxes, QStringList("note|please open a port first"));
}

TEST_F(Strings, MovesAddsAndDeletesRows)
{
    window_start();
    click("pushButton_extend");
    table()->setRowCount(0);
    const char *const add = "pushButton_table_row_add", *const del = "pushButton_table_row_del",
                      *const up = "pushButton_table_row_up",
                      *const down = "pushButton_table_row_down";
    struct Step
    {
        const char* button;
        int current; // row to stand on first; -1 for none, -2 for where the last step left it
        const char* texts;
        int current_after;
    };
    const Step steps[] = {
        {del, -1, "", -1},     {up, -1, "", -1},      {down, -1, "", -1},  {add, -1, "a", 0},
        {add, -2, "ab", 1},    {add, -2, "abc", 2},   {add, 0, "adbc", 1}, {down, -2, "abdc", 2},
        {down, -2, "abcd", 3}, {down, -2, "abcd", 3}, {up, -2, "abdc", 2}, {up, 0, "abdc", 0},
        {del, 1, "adc", 1},    {add, -1, "eadc", 0},
    };
    char next = 'a';
    for (const Step& step : steps) {
        SCOPED_TRACE(step.texts);
        if (step.current > -2)
            table()->setCurrentCell(step.current, step.current < 0 ? -1 : VALUE_COLUMN);
        click(step.button);
        if (step.button == add)
            table()->item(table()->currentRow(), VALUE_COLUMN)->setText(QString(next++));
        EXPECT_EQ(texts(), step.texts);
        EXPECT_EQ(table()->currentRow(), step.current_after);
    }
    click(up);
    EXPECT_EQ(table()->item(0, OPERATION_COLUMN)->flags(), Qt::ItemIsEnabled);
}

TEST_F(Strings, HidesItsPanelAtEveryStart)
{
    window_start();
    auto* const button = find<QPushButton>("pushButton_extend");
    EXPECT_EQ(button->text(), "&extend<<");
    click("pushButton_extend");
    EXPECT_TRUE(find<QDockWidget>("dockWidget_extend")->isVisible());
    EXPECT_EQ(button->text(), "&hide>>");
    window_end();
    window_start();
    EXPECT_FALSE(find<QDockWidget>("dockWidget_extend")->isVisible());
    EXPECT_EQ(find<QPushButton>("pushButton_extend")->text(), "&extend<<");
}
