#include "linkcfg/qserialcfgwidget.h"

#include "pagetest.h"
#include "serialport/qextserialenumerator.h"

#include <QDir>
#include <map>

namespace {

// The file of a page with its defaults but for these; QSettings sorts the keys that it adds.
std::string stored(std::map<std::string, std::string> values)
{
    values.insert({{"baudrate", "14"}, {"custombaud", "1500000"}, {"databits", "3"}});
    for (const char* const key : {"flowctl", "parity", "port", "stopbits"})
        values.insert({key, "0"});
    values.insert({"timeout", "300"});
    std::string text = "[serialSettings]\n";
    for (const auto& [key, value] : values)
        text += key + "=" + value + "\n";
    return text;
}

// "text:number" of each row of a box.
QStringList rows_of(const QComboBox* box)
{
    QStringList rows;
    for (int row = 0; row < box->count(); ++row)
        rows += box->itemText(row) + ':' + box->itemData(row).toString();
    return rows;
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

TEST_F(SerialPage, OffersTheRowsThatFilesCountOn)
{
    QString rates = "110 300 600 1200 2400 4800 9600 14400 19200 38400 56000 57600 74880 76800 "
                    "115200 128000 230400 256000 380400 256000 460800 921600 1000000 1152000";
    rates.replace(QRegularExpression("(\\d+)"), "\\1:\\1");
    const std::pair<const char*, QString> boxes[] = {
        {"baudComboBox", rates + " custom:1500000"},
        {"dataBitsComboBox", "5:5 6:6 7:7 8:8"},
        {"parityComboBox", "none:0 odd:1 even:2 mark:3 space:4"},
        {"stopBitsComboBox", "1:0 1.5:1 2:2"},
        {"flowComboBox", "off:0 hard ware:1 xon/xoff:2"}};
    open("");
    for (const auto& [box, rows] : boxes)
        EXPECT_EQ(rows_of(child<QComboBox>(box)).join(' '), rows);
}

TEST_F(SerialPage, StoresOnlyWhatChangesAndMendsTheValuesThatCannotBe)
{
    const std::string foreign = "[other]\nx=1\n\n[serialSettings]\nzz=1\n";
    const std::map<std::string, std::string> all = {
        {"baudrate", "24"}, {"custombaud", "250000"}, {"databits", "0"}, {"parity", "4"},
        {"stopbits", "1"},  {"flowctl", "2"},         {"timeout", "77"}};
    const std::tuple<std::string, std::vector<int>, std::string> rows[] = {
        {"", {115200, 8, 0, 0, 0, 300}, ""},
        {foreign, {115200, 8, 0, 0, 0, 300}, foreign},
        {stored(all), {250000, 5, 4, 1, 2, 77}, stored(all)},
        {stored({{"baudrate", "19"}}), {256000, 8, 0, 0, 0, 300}, stored({{"baudrate", "19"}})},
        {stored({{"custombaud", "-3"}}), {115200, 8, 0, 0, 0, 300}, stored({{"custombaud", "1"}})},
        {stored({{"port", "77"}}), {115200, 8, 0, 0, 0, 300}, stored({})},
        {stored({{"baudrate", "25"}}), {0, 8, 0, 0, 0, 300}, stored({{"baudrate", "-1"}})},
        {stored({{"timeout", "20001"}}),
         {115200, 8, 0, 0, 0, 20000},
         stored({{"timeout", "20000"}})},
        {stored({{"port", "x"}, {"timeout", "y"}}),
         {115200, 8, 0, 0, 0, 1},
         stored({{"timeout", "1"}})},
    };
    for (const auto& [before, expected, after] : rows) {
        open(before);
        EXPECT_EQ(settings(), expected) << before;
        EXPECT_EQ(close(), after);
    }
    open("");
    enter<QSpinBox>("timeoutSpinBox", "301");
    EXPECT_EQ(child<QSpinBox>("timeoutSpinBox")->text(), "301 ms");
    EXPECT_EQ(close(), stored({{"timeout", "301"}}));
    page = std::make_unique<QSerialCfgWidget>(nullptr, ""); // no file
    baud()->setCurrentIndex(3);
    page.reset();
    EXPECT_TRUE(QDir().isEmpty());
}

TEST_F(SerialPage, ListsThePortsOfTheMachineAndKeepsTheRowNotTheName)
{
    const QString folder = sandbox.ports_folder();
    Pty other, between;
    other.link_into(folder, "c");
    QStringList names;
    for (const QextPortInfo& info : QextSerialEnumerator::getPorts())
        names += info.portName;
    const std::string text = stored({{"port", std::to_string(names.indexOf(folder + "/c"))}});
    open(text);
    EXPECT_EQ(rows_of(child<QComboBox>("portComboBox")),
              names.replaceInStrings(QRegularExpression("$"), ":"));
    between.link_into(folder, "b");
    EXPECT_EQ(page->port_name(), folder + "/c");
    EXPECT_EQ(close(), text);
    open(text);
    EXPECT_EQ(page->port_name(), folder + "/b");
    for (Pty* const gone : {&pty, &other, &between})
        gone->unlink();
    const QList<QextPortInfo> left = QextSerialEnumerator::getPorts(); // the machine's own
    open("");
    EXPECT_EQ(page->port_name(), left.value(0).portName);
    EXPECT_EQ(page->port_exists(), !left.isEmpty());
    EXPECT_EQ(close(), left.isEmpty() ? stored({{"port", "-1"}}) : "");
}

TEST_F(SerialPage, OpensTheCustomRowForEditingAndClosesItAfterwards)
{
    const std::tuple<Qt::Key, const char*, bool, const char*> steps[] = {
        // key, what is shown after it and can be edited, and what is entered then
        {Qt::Key_End, "1500000", true, "123456"},
        {Qt::Key_Up, "1152000", false, ""},
        {Qt::Key_Down, "123456", true, ""},
        {Qt::Key_Up, "1152000", false, ""},
    };
    open("");
    for (const auto& [key, shown, editable, rate] : steps) {
        QTest::keyClick(baud(), key);
        EXPECT_EQ(baud()->currentText(), shown);
        EXPECT_EQ(baud()->isEditable(), editable);
        EXPECT_EQ(page->is_custom_baud_index(baud()->currentIndex()), editable);
        if (*rate)
            baud()->lineEdit()->selectAll();
        QTest::keyClicks(baud(), rate);
    }
    EXPECT_EQ(baud()->itemText(page->custom_baud_index()), "custom");
    EXPECT_EQ(close(), stored({{"baudrate", "23"}, {"custombaud", "123456"}}));
}

TEST_F(SerialPage, TakesIntegersOfAtLeastOneInTheCustomRowAtEveryKey)
{
    constexpr int ALL = -1; // is selected
    const std::tuple<int, const char*, const char*> rows[] = {
        // cursor before, keys, and the rate after them
        {ALL, "12a", "12"},                                         // a letter is taken back
        {ALL, "12a3", "123"},    {ALL, "1", "1"},                   // no completion to 110
        {ALL, "0", "1"},         {ALL, "99999999999", "999999999"}, // no more than an int holds
        {ALL, "\b", "5000"},     // an empty field gets its number back
        {ALL, "\b9", "9"},       // and the next key replaces that
        {1, "12", "512000"},     // the cursor stays where it is
        {ALL, "9600\r", "9600"}, // a rate of the table stays custom
    };
    for (const auto& [cursor, keys, rate] : rows) {
        SCOPED_TRACE(keys);
        open(stored({{"baudrate", "24"}, {"custombaud", "5000"}}));
        QLineEdit* const edit = baud()->lineEdit();
        edit->selectAll();
        if (cursor != ALL)
            edit->setCursorPosition(cursor);
        for (const char* key = keys; *key; ++key)
            QTest::keyClick(edit, *key);
        EXPECT_EQ(edit->text(), rate);
        EXPECT_EQ(page->baud_rate(), QString(rate).toInt());
        EXPECT_EQ(close(), stored({{"baudrate", "24"}, {"custombaud", rate}}));
    }
}
