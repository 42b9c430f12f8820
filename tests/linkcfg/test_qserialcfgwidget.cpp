#include "qserialcfgwidget.h"

#include "dialogfile.h"
#include "pty.h"
#include "qextserialenumerator.h"
#include "wait.h"

#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <gmock/gmock.h>
#include <memory>

namespace {

using testing::ElementsAre;

// The file of a page with these values and the defaults; QSettings sorts the keys that it adds.
std::string stored(const std::string& port, const std::string& baud, const std::string& custom,
                   const std::string& timeout = "300")
{
    return "[serialSettings]\nbaudrate=" + baud + "\ncustombaud=" + custom +
           "\ndatabits=3\nflowctl=0\nparity=0\nport=" + port + "\nstopbits=0\ntimeout=" + timeout +
           "\n";
}

// A machine with the virtual port "a" and perhaps hardware ports, and one page at a time.
class SerialPage : public testing::Test
{
protected:
    SerialPage() { pty.link_into(file.box().ports_folder(), "a"); }

    void open(const std::string& text)
    {
        file.write(text);
        page = std::make_unique<QSerialCfgWidget>(nullptr, file.path());
    }

    // What the file holds once the page is gone.
    std::string close()
    {
        page.reset();
        return file.text();
    }

    QComboBox* box(const char* name) const { return page->findChild<QComboBox*>(name); }
    QComboBox* baud() const { return box("baudComboBox"); }

    DialogFile file;
    Pty pty;
    std::unique_ptr<QSerialCfgWidget> page;
};

QStringList texts(const QComboBox* box)
{
    QStringList list;
    for (int row = 0; row < box->count(); ++row)
        list += box->itemText(row);
    return list;
}

QString data(const QComboBox* box)
{
    QStringList list;
    for (int row = 0; row < box->count(); ++row)
        list += QString::number(box->itemData(row).toInt());
    return list.join(' ');
}

TEST_F(SerialPage, shows_its_defaults_and_stores_nothing_unasked)
{
    open("");
    ASSERT_TRUE(page->port_exists());
    PortSettings settings = {};
    page->port_settings_get(&settings);
    EXPECT_EQ(settings.BaudRate, 115200);
    EXPECT_EQ(settings.DataBits, DATA_8);
    EXPECT_EQ(settings.Parity, PAR_NONE);
    EXPECT_EQ(settings.StopBits, STOP_1);
    EXPECT_EQ(settings.FlowControl, FLOW_OFF);
    EXPECT_EQ(settings.Timeout_Millisec, 300);
    EXPECT_EQ(page->custom_baud(), 1500000);
    EXPECT_EQ(close(), "");
}

TEST_F(SerialPage, offers_the_rows_that_files_count_on)
{
    open("");
    EXPECT_EQ(texts(baud()).join(' '),
              "110 300 600 1200 2400 4800 9600 14400 19200 38400 56000 57600 74880 76800 115200 "
              "128000 230400 256000 380400 256000 460800 921600 1000000 1152000 custom");
    EXPECT_EQ(data(baud()), texts(baud()).join(' ').replace("custom", "1500000"));
    const struct
    {
        const char *name, *texts, *data;
    } rows[] = {{"dataBitsComboBox", "5 6 7 8", "5 6 7 8"},
                {"parityComboBox", "none odd even mark space", "0 1 2 3 4"},
                {"stopBitsComboBox", "1 1.5 2", "0 1 2"},
                {"flowComboBox", "off hard ware xon/xoff", "0 1 2"}};
    for (const auto& row : rows) {
        EXPECT_EQ(texts(box(row.name)).join(' '), row.texts);
        EXPECT_EQ(data(box(row.name)), row.data);
    }
}

TEST_F(SerialPage, lays_its_rows_out_in_the_order_of_tab)
{
    open("");
    const auto* grid = qobject_cast<QGridLayout*>(page->layout());
    const char* const labels[] = {
        "Port:", "Baud Rate:", "Data Bits:", "Stop Bits:", "Parity:", "Flow Ctrl:", "Timeout:"};
    page->show();
    ASSERT_TRUE(wait_until([&] { return page->isActiveWindow(); }));
    grid->itemAtPosition(0, 1)->widget()->setFocus();
    for (int row = 0; row < 7; ++row) {
        EXPECT_EQ(qobject_cast<QLabel*>(grid->itemAtPosition(row, 0)->widget())->text(),
                  labels[row]);
        EXPECT_EQ(grid->itemAtPosition(row, 1)->widget(), QApplication::focusWidget()) << row;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    const auto* timeout = page->findChild<QSpinBox*>("timeoutSpinBox");
    EXPECT_EQ(timeout->minimum(), 1);
    EXPECT_EQ(timeout->maximum(), 20000);
    EXPECT_EQ(timeout->text(), "300 ms");
}

struct OpenCloseRow
{
    const char* name;
    std::string before;
    SerialCfgIndexes shown;
    int baud, custom;
    std::string after;
};

class SerialPageFile : public SerialPage, public testing::WithParamInterface<OpenCloseRow>
{
};

TEST_P(SerialPageFile, is_shown_and_left_as_told)
{
    const OpenCloseRow& row = GetParam();
    open(row.before);
    SerialCfgIndexes now = {};
    page->indexes_get(&now);
    EXPECT_THAT((QList<int>{now.port, now.baud, now.data_bits, now.parity, now.stop_bits, now.flow,
                            now.timeout}),
                ElementsAre(row.shown.port, row.shown.baud, row.shown.data_bits, row.shown.parity,
                            row.shown.stop_bits, row.shown.flow, row.shown.timeout));
    EXPECT_EQ(page->baud_rate(), row.baud);
    EXPECT_EQ(page->custom_baud(), row.custom);
    EXPECT_EQ(close(), row.after);
}

const std::string ALL_SET = "[serialSettings]\nport=0\nbaudrate=3\ncustombaud=250000\ndatabits=0\n"
                            "parity=4\nstopbits=1\nflowctl=2\ntimeout=77\n";

INSTANTIATE_TEST_SUITE_P(
    Files, SerialPageFile,
    testing::Values(
        OpenCloseRow{"every_key", ALL_SET, {0, 3, 0, 4, 1, 2, 77}, 1200, 250000, ALL_SET},
        OpenCloseRow{"foreign_keys_stay",
                     "[other]\nx=1\n\n[serialSettings]\nzz=1\n",
                     {0, 14, 3, 0, 0, 0, 300},
                     115200,
                     1500000,
                     "[other]\nx=1\n\n[serialSettings]\nzz=1\n"},
        OpenCloseRow{"custom_row",
                     stored("0", "24", "123456"),
                     {0, 24, 3, 0, 0, 0, 300},
                     123456,
                     123456,
                     stored("0", "24", "123456")},
        OpenCloseRow{"second_256000",
                     stored("0", "19", "1500000"),
                     {0, 19, 3, 0, 0, 0, 300},
                     256000,
                     1500000,
                     stored("0", "19", "1500000")},
        OpenCloseRow{"custom_rate_is_raised_to_1",
                     stored("0", "14", "-3"),
                     {0, 14, 3, 0, 0, 0, 300},
                     115200,
                     1,
                     stored("0", "14", "1")},
        OpenCloseRow{"port_that_has_gone",
                     stored("77", "14", "1500000"),
                     {0, 14, 3, 0, 0, 0, 300},
                     115200,
                     1500000,
                     stored("0", "14", "1500000")},
        OpenCloseRow{"rate_outside_the_rows",
                     stored("0", "25", "1500000"),
                     {0, -1, 3, 0, 0, 0, 300},
                     0,
                     1500000,
                     stored("0", "-1", "1500000")},
        OpenCloseRow{"timeout_is_bounded",
                     stored("0", "14", "1500000", "20001"),
                     {0, 14, 3, 0, 0, 0, 20000},
                     115200,
                     1500000,
                     stored("0", "14", "1500000", "20000")},
        OpenCloseRow{"rubbish",
                     stored("x", "14", "1e", "y"),
                     {0, 14, 3, 0, 0, 0, 1},
                     115200,
                     1,
                     stored("0", "14", "1", "1")}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(SerialPage, stores_all_keys_when_one_setting_changes)
{
    open("");
    auto* timeout = page->findChild<QSpinBox*>("timeoutSpinBox");
    timeout->selectAll();
    QTest::keyClicks(timeout, "301");
    EXPECT_EQ(page->timeout(), 301);
    EXPECT_EQ(close(), stored("0", "14", "1500000", "301"));
}

TEST_F(SerialPage, without_a_file_name_stores_nothing)
{
    for (const QString& name : {QString(), QString("")}) {
        page = std::make_unique<QSerialCfgWidget>(nullptr, name);
        baud()->setCurrentIndex(3);
        page.reset();
        EXPECT_TRUE(QDir().isEmpty());
    }
}

TEST_F(SerialPage, lists_the_ports_of_the_machine_and_keeps_the_row_not_the_name)
{
    Pty other;
    other.link_into(file.box().ports_folder(), "c");
    QStringList names;
    for (const QextPortInfo& info : QextSerialEnumerator::getPorts())
        names += info.portName;
    const QString c = file.box().ports_folder() + "/c";
    const int row = names.indexOf(c);
    ASSERT_GT(row, 0);

    open(stored(std::to_string(row), "14", "1500000"));
    EXPECT_EQ(texts(box("portComboBox")), names);
    EXPECT_EQ(page->port_name(), c);
    EXPECT_EQ(page->port_index(), row);
    EXPECT_EQ(close(), stored(std::to_string(row), "14", "1500000"));

    Pty between;
    open(file.text());
    between.link_into(file.box().ports_folder(), "b");
    EXPECT_EQ(page->port_name(), c) << "the list is read once";
    open(file.text());
    EXPECT_EQ(page->port_name(), file.box().ports_folder() + "/b");
}

TEST_F(SerialPage, without_a_port_says_so)
{
    pty.unlink();
    if (!QextSerialEnumerator::getPorts().isEmpty())
        GTEST_SKIP() << "this machine has a serial port of its own";
    open("");
    EXPECT_FALSE(page->port_exists());
    EXPECT_EQ(page->port_name(), "");
    EXPECT_EQ(page->port_index(), -1);
    EXPECT_EQ(close(), stored("-1", "14", "1500000"));
}

TEST_F(SerialPage, custom_row_opens_and_closes)
{
    open("");
    EXPECT_EQ(page->custom_baud_index(), 24);
    EXPECT_TRUE(page->is_custom_baud_index(24));
    EXPECT_FALSE(page->is_custom_baud_index(23));
    EXPECT_FALSE(page->is_custom_baud_index(-1));
    EXPECT_FALSE(baud()->isEditable());

    QTest::keyClick(baud(), Qt::Key_End);
    EXPECT_TRUE(baud()->isEditable());
    EXPECT_EQ(baud()->currentText(), "1500000");
    EXPECT_EQ(baud()->itemText(24), "1500000");
    baud()->lineEdit()->selectAll();
    QTest::keyClicks(baud(), "123456");

    QTest::keyClick(baud(), Qt::Key_Up);
    EXPECT_EQ(baud()->currentText(), "1152000");
    EXPECT_FALSE(baud()->isEditable());
    EXPECT_EQ(baud()->itemText(24), "custom");
    QTest::keyClick(baud(), Qt::Key_Down);
    EXPECT_EQ(baud()->lineEdit()->text(), "123456");
    QTest::keyClick(baud(), Qt::Key_Up);
    EXPECT_EQ(close(), stored("0", "23", "123456"));
}

TEST_F(SerialPage, custom_field_takes_integers_of_at_least_one_at_every_key)
{
    const struct
    {
        const char* why;
        int cursor; // -1: all is selected
        const char* keys;
        const char* shown;
        int rate;
    } rows[] = {
        {"a plain number", -1, "250000", "250000", 250000},
        {"a letter is taken back", -1, "12a", "12", 12},
        {"typing goes on behind it", -1, "12a3", "123", 123},
        {"no completion to 110", -1, "1", "1", 1},
        {"raised to 1", -1, "0", "1", 1},
        {"more than an int holds", -1, "99999999999", "999999999", 999999999},
        {"an empty field gets its number back", -1, "\b", "5000", 5000},
        {"and the next key replaces that", -1, "\b9", "9", 9},
        {"in the middle the cursor stays", 1, "12", "512000", 512000},
        {"a rate of the table stays custom", -1, "9600\r", "9600", 9600},
    };
    for (const auto& row : rows) {
        open(stored("0", "24", "5000"));
        QLineEdit* edit = baud()->lineEdit();
        ASSERT_TRUE(edit);
        edit->selectAll();
        if (row.cursor >= 0)
            edit->setCursorPosition(row.cursor);
        for (const char* key = row.keys; *key; ++key)
            QTest::keyClick(edit, *key);
        EXPECT_EQ(edit->text(), row.shown) << row.why;
        EXPECT_EQ(baud()->itemText(24), row.shown) << row.why;
        EXPECT_EQ(page->baud_rate(), row.rate) << row.why;
        EXPECT_EQ(baud()->currentIndex(), 24) << row.why;
        EXPECT_EQ(baud()->count(), 25) << row.why;
        EXPECT_EQ(close(), stored("0", "24", std::to_string(row.rate))) << row.why;
    }
}

} // namespace
