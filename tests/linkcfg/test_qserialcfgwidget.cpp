#include "linkcfg/qserialcfgwidget.h"

#include "pagetest.h"
#include "serialport/qextserialenumerator.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QSpinBox>
#include <map>

namespace {

// The file of a page with its defaults but for these; QSettings sorts the keys that it adds.
std::string stored(std::map<std::string, std::string> values)
{
    values.insert({{"baudrate", "14"},
                   {"custombaud", "1500000"},
                   {"databits", "3"},
                   {"flowctl", "0"},
                   {"parity", "0"},
                   {"port", "0"},
                   {"stopbits", "0"},
                   {"timeout", "300"}});
    std::string text = "[serialSettings]\n";
    for (const auto& [key, value] : values)
        text += key + "=" + value + "\n";
    return text;
}

// The texts of a box, and the numbers that they mean.
std::pair<QString, QString> rows_of(const QComboBox* box)
{
    QStringList texts, data;
    for (int row = 0; row < box->count(); ++row) {
        texts += box->itemText(row);
        data += box->itemData(row).toString();
    }
    return {texts.join(' '), data.join(' ')};
}

class SerialPage : public PageTest<QSerialCfgWidget>
{
protected:
    QComboBox* baud() const { return child<QComboBox>("baudComboBox"); }
    // Baud rate, data bits, parity, stop bits, flow control and time-out as they go to a port.
    std::vector<int> settings() const
    {
        PortSettings s = {};
        page->port_settings_get(&s);
        return {s.BaudRate, s.DataBits,    s.Parity,
                s.StopBits, s.FlowControl, int(s.Timeout_Millisec)};
    }
};

} // namespace

TEST_F(SerialPage, StoresNothingUnaskedAndAllKeysWhenOneSettingChanges)
{
    open("");
    EXPECT_TRUE(page->port_exists());
    EXPECT_EQ(settings(), std::vector<int>({115200, 8, PAR_NONE, STOP_1, FLOW_OFF, 300}));
    EXPECT_EQ(page->custom_baud(), 1500000);
    EXPECT_EQ(close(), "");

    const auto all_set = [](const std::string& timeout) {
        return stored({{"baudrate", "3"},
                       {"custombaud", "250000"},
                       {"databits", "0"},
                       {"parity", "4"},
                       {"stopbits", "1"},
                       {"flowctl", "2"},
                       {"timeout", timeout}});
    };
    open(all_set("77"));
    EXPECT_EQ(settings(), std::vector<int>({1200, 5, PAR_SPACE, STOP_1_5, FLOW_XONXOFF, 77}));
    EXPECT_EQ(page->custom_baud(), 250000);
    auto* const timeout = child<QSpinBox>("timeoutSpinBox");
    EXPECT_EQ(timeout->text(), "77 ms");
    timeout->selectAll();
    QTest::keyClicks(timeout, "301");
    EXPECT_EQ(close(), all_set("301"));
}

TEST_F(SerialPage, OffersTheRowsThatFilesCountOn)
{
    open("");
    const QString rates =
        "110 300 600 1200 2400 4800 9600 14400 19200 38400 56000 57600 74880 76800 115200 128000 "
        "230400 256000 380400 256000 460800 921600 1000000 1152000 ";
    const std::tuple<const char*, QString, QString> boxes[] = {
        {"baudComboBox", rates + "custom", rates + "1500000"},
        {"dataBitsComboBox", "5 6 7 8", "5 6 7 8"},
        {"parityComboBox", "none odd even mark space", "0 1 2 3 4"},
        {"stopBitsComboBox", "1 1.5 2", "0 1 2"},
        {"flowComboBox", "off hard ware xon/xoff", "0 1 2"}};
    for (const auto& [box, texts, data] : boxes)
        EXPECT_EQ(rows_of(child<QComboBox>(box)), std::pair(texts, data));
}

TEST_F(SerialPage, MendsOnlyTheValuesThatCannotBe)
{
    const std::string foreign = "[other]\nx=1\n\n[serialSettings]\nzz=1\n";
    const std::string custom = stored({{"baudrate", "24"}, {"custombaud", "123456"}});
    const std::tuple<std::string, int, std::string> rows[] = {
        {foreign, 115200, foreign},
        {custom, 123456, custom},
        {stored({{"baudrate", "19"}}), 256000, stored({{"baudrate", "19"}})}, // the second one
        {stored({{"custombaud", "-3"}}), 115200, stored({{"custombaud", "1"}})},
        {stored({{"port", "77"}}), 115200, stored({{"port", "0"}})},
        {stored({{"baudrate", "25"}}), 0, stored({{"baudrate", "-1"}})},
        {stored({{"timeout", "20001"}}), 115200, stored({{"timeout", "20000"}})},
        {stored({{"port", "x"}, {"custombaud", "1e"}, {"timeout", "y"}}), 115200,
         stored({{"custombaud", "1"}, {"timeout", "1"}})},
    };
    for (const auto& [before, baud, after] : rows) {
        SCOPED_TRACE(before);
        open(before);
        EXPECT_EQ(page->baud_rate(), baud);
        EXPECT_EQ(close(), after);
    }
}

TEST_F(SerialPage, StoresNothingWithoutAFileName)
{
    for (const QString& name : {QString(), QString("")}) {
        page = std::make_unique<QSerialCfgWidget>(nullptr, name);
        baud()->setCurrentIndex(3);
        page.reset();
        EXPECT_TRUE(QDir().isEmpty());
    }
}

TEST_F(SerialPage, ListsThePortsOfTheMachineAndKeepsTheRowNotTheName)
{
    const QString folder = sandbox.ports_folder();
    Pty other, between;
    other.link_into(folder, "c");
    QStringList names;
    for (const QextPortInfo& info : QextSerialEnumerator::getPorts())
        names += info.portName;
    const int row = names.indexOf(folder + "/c");
    ASSERT_GT(row, 0);
    const std::string text = stored({{"port", std::to_string(row)}});

    open(text);
    EXPECT_EQ(rows_of(child<QComboBox>("portComboBox")).first, names.join(' '));
    between.link_into(folder, "b");
    EXPECT_EQ(page->port_name(), folder + "/c");
    EXPECT_EQ(close(), text);
    open(text);
    EXPECT_EQ(page->port_name(), folder + "/b");
}

TEST_F(SerialPage, SaysSoWithoutAPort)
{
    pty.unlink();
    if (!QextSerialEnumerator::getPorts().isEmpty())
        GTEST_SKIP() << "this machine has a serial port of its own";
    open("");
    EXPECT_FALSE(page->port_exists());
    EXPECT_EQ(page->port_name(), "");
    EXPECT_EQ(close(), stored({{"port", "-1"}}));
}

TEST_F(SerialPage, OpensTheCustomRowForEditingAndClosesItAfterwards)
{
    open("");
    EXPECT_TRUE(page->is_custom_baud_index(page->custom_baud_index()));
    EXPECT_FALSE(page->is_custom_baud_index(23));
    QTest::keyClick(baud(), Qt::Key_End);
    ASSERT_TRUE(baud()->isEditable());
    EXPECT_EQ(baud()->currentText(), "1500000");
    baud()->lineEdit()->selectAll();
    QTest::keyClicks(baud(), "123456");

    QTest::keyClick(baud(), Qt::Key_Up);
    EXPECT_EQ(baud()->currentText(), "1152000");
    EXPECT_FALSE(baud()->isEditable());
    EXPECT_EQ(baud()->itemText(24), "custom");
    QTest::keyClick(baud(), Qt::Key_Down);
    EXPECT_EQ(baud()->lineEdit()->text(), "123456");
    QTest::keyClick(baud(), Qt::Key_Up);
    EXPECT_EQ(close(), stored({{"baudrate", "23"}, {"custombaud", "123456"}}));
}

TEST_F(SerialPage, TakesIntegersOfAtLeastOneInTheCustomRowAtEveryKey)
{
    const struct
    {
        const char* why;
        int cursor; // -1: all is selected
        const char* keys;
        const char* rate;
    } rows[] = {
        {"a letter is taken back", -1, "12a", "12"},
        {"typing goes on after it", -1, "12a3", "123"},
        {"no completion to 110", -1, "1", "1"},
        {"raised to 1", -1, "0", "1"},
        {"more than an int holds", -1, "99999999999", "999999999"},
        {"an empty field gets its number back", -1, "\b", "5000"},
        {"and the next key replaces that", -1, "\b9", "9"},
        {"in the middle the cursor stays", 1, "12", "512000"},
        {"a rate of the table stays custom", -1, "9600\r", "9600"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        open(stored({{"baudrate", "24"}, {"custombaud", "5000"}}));
        QLineEdit* const edit = baud()->lineEdit();
        ASSERT_TRUE(edit);
        edit->selectAll();
        if (row.cursor >= 0)
            edit->setCursorPosition(row.cursor);
        for (const char* key = row.keys; *key; ++key)
            QTest::keyClick(edit, *key);
        EXPECT_EQ(edit->text(), row.rate);
        EXPECT_EQ(page->baud_rate(), QString(row.rate).toInt());
        EXPECT_EQ(close(), stored({{"baudrate", "24"}, {"custombaud", row.rate}}));
    }
}
