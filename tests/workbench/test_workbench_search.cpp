// The page that searches for devices.
#include "workbench/searchpage.h"
#include "workbenchtest.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QToolTip>

class WorkbenchSearch : public Workbench
{
protected:
    // By default long enough for a busy machine; each pair of a search takes that long.
    void device_start(const QString& command, int timeout_ms = 1000)
    {
        module = std::make_unique<Simulated>(command);
        configure("workbench/link", "serial:" + module->address + ",115200,8N1");
        configure("workbench/timeout", timeout_ms);
        page_open();
    }
    void page_open()
    {
        window_start();
        find<QTabWidget>("pages")->setCurrentWidget(&window->search());
    }
    bool search_end()
    {
        return wait_until([&] { return !window->search().busy(); }, 6 * PATIENCE_MS);
    }
    // Each of 66 pairs takes the time-out; on a busy machine an answer may come after a short one,
    // so the next attempt gives more.
    bool searched(int devices)
    {
        for (int timeout_ms = 80; timeout_ms <= PATIENCE_MS; timeout_ms *= 4) {
            if (!connect_again(timeout_ms))
                return false;
            click("search_start");
            const auto ended = [&] { return !window->search().busy(); };
            if (!wait_until(ended, 100 * timeout_ms + PATIENCE_MS))
                return false;
            if (said().startsWith("The search is over") &&
                window->search().devices().count() == devices)
                return true;
        }
        return false;
    }
    bool connect_again(int timeout_ms)
    {
        click("connect");
        const auto closed = [&] { return text<QLabel>("connection_state") == "not connected"; };
        if (!wait_until(closed))
            return false;
        find<QSpinBox>("timeout")->setValue(timeout_ms);
        return connect_module();
    }
    QString said() const { return notice("search_notice"); }
    bool says(const QString& text)
    {
        return wait_until([&] { return said().contains(text); });
    }
    void device_click(int row)
    {
        auto* const table = find<QTableView>("devices");
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(row, 0)).center());
    }
    QString word(int row, int column) const
    {
        return find<QTableView>("block")->model()->index(row, column).data().toString();
    }
    void word_type(int row, const QString& text, Qt::Key key = Qt::Key_Return)
    {
        auto* const table = find<QTableView>("block");
        table->setCurrentIndex(table->model()->index(row, 0));
        QTest::keyClick(table, Qt::Key_F2);
        auto* const editor = table->viewport()->findChild<QLineEdit*>();
        ASSERT_TRUE(editor);
        editor->setText(text);
        QTest::keyClick(editor, key);
        QCoreApplication::sendPostedEvents(); // takes the text over
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(WorkbenchSearch, FindsThreeDevicesOn66PairsAndChangesAWordOfOne)
{
    device_start("cnet --device 12,1,0x1234 --device 12,1,0x2345 --device 30,2,0x3456");
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(searched(3));
    EXPECT_EQ(said(), "The search is over, devices found: 3.");
    const HeatMap& map = window->search().map();
    EXPECT_EQ(map.count_of(HeatState::Searched), 66);
    EXPECT_EQ(map.found(12, 1), 2);
    EXPECT_EQ(map.found(30, 2), 1);

    ASSERT_TRUE(
        connect_again(PATIENCE_MS)); // replies have a known length, so nothing waits so long
    device_click(1);
    ASSERT_TRUE(says("The configuration of 23 45 is read."));
    EXPECT_EQ(word(3, 1), "51 52 53 54");
    word_type(3, "11 22 33");
    word_type(4, "00000000", Qt::Key_Escape);
    click("block_write");
    EXPECT_EQ(said(), "Word 3: a word has 8 hexadecimal digits.");
    device_click(2); // elsewhere, which must not cost what was typed
    EXPECT_TRUE(said().startsWith("Changed words of 23 45 aren't written")) << qPrintable(said());
    EXPECT_EQ(word(3, 0), "11 22 33");
    word_type(3, "11223344");
    click("block_write");
    ASSERT_TRUE(says("The configuration of 23 45 is written and read back."));
    EXPECT_EQ(word(3, 1), "11 22 33 44");

    device_click(2);
    ASSERT_TRUE(says("The configuration of 34 56 is read."));
    EXPECT_EQ(word(0, 1), "56 57 58 59");
    device_click(1);
    ASSERT_TRUE(says("The configuration of 23 45 is read."));
    EXPECT_EQ(word(3, 1), "11 22 33 44");
    EXPECT_EQ(word(4, 1), "55 56 57 58");
    EXPECT_FALSE(find<QPushButton>("block_revert")->isEnabled());
}

TEST_F(WorkbenchSearch, WorksOverTheNetworkToo)
{
    configure("search/channels", "12");
    device_start("cnet --listen 0 --device 12,1,0x1234");
    type("link_text", "tcp:127.0.0.1:" + module->address.section(':', -1));
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(search_end());
    ASSERT_EQ(window->search().devices().count(), 1) << qPrintable(said());
    device_click(0);
    EXPECT_TRUE(says("The configuration of 12 34 is read."));
}

TEST_F(WorkbenchSearch, AsksForOneAddressWithLongAnswers)
{
    configure("search/channels", "9,12");
    configure("search/target", "2345");
    configure("search/long", true);
    device_start("cnet --device 12,0,0x1234 --device 12,0,0x2345");
    find<QCheckBox>("search_rate1")->click();
    find<QCheckBox>("search_rate2")->click();
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(search_end());
    EXPECT_EQ(window->search().map().count_of(HeatState::Searched), 2);
    ASSERT_EQ(window->search().devices().count(), 1);
    device_click(0);
    EXPECT_TRUE(says("The configuration of 00 C0 FF EE 00 00 23 45 is read."));
}

TEST_F(WorkbenchSearch, StopsWhenAskedAndAsksBeforeTheWindowCloses)
{
    device_start("cnet --device 9,0,0x1234");
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(wait_until([&] { return window->search().devices().count() == 1; }));
    click("search_stop");
    ASSERT_TRUE(search_end());
    EXPECT_TRUE(said().startsWith("The search was stopped after")) << qPrintable(said());
    EXPECT_GT(window->search().map().count_of(HeatState::Waiting), 0);
    EXPECT_EQ(window->search().map().found(9, 0), 1);
    click("search_start");
    yes = false;
    window->close();
    EXPECT_TRUE(window->isVisible() && window->search().busy());
    yes = true;
    window->close();
    EXPECT_TRUE(wait_until([&] { return !window->isVisible(); }));
    EXPECT_EQ(questions, 2);
}

TEST_F(WorkbenchSearch, EndsWithASentenceWhenTheLinkOrTheDeviceGoes)
{
    device_start("cnet --device 9,0,0x1234");
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(wait_until([&] { return window->search().devices().count() == 1; }));
    module->process.kill();
    ASSERT_TRUE(search_end());
    EXPECT_TRUE(said().contains("has gone") || said().contains("is lost")) << qPrintable(said());
    EXPECT_EQ(window->search().devices().count(), 1);
    window.reset();
    module.reset();

    device_start("echo"); // what it says back is no answer
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(search_end());
    EXPECT_TRUE(said().contains("can't be tuned")) << qPrintable(said());
    type("block_address", "1234");
    click("block_read");
    EXPECT_TRUE(says("The local device can't be tuned: is it on?"));
    EXPECT_EQ(questions, 0);
}

TEST_F(WorkbenchSearch, ListensForDorvModules)
{
    configure("workbench/frame", "none");
    configure("search/duration", 3600);
    device_start("dorv --neighbours 3", 100);
    find<QComboBox>("search_kind")->setCurrentText("Dorv");
    ASSERT_TRUE(connect_module());
    click("search_start");
    ASSERT_TRUE(wait_until([&] { return window->search().devices().count() == 3; }));
    click("search_stop");
    ASSERT_TRUE(search_end());
    EXPECT_EQ(said(), "The search was stopped, devices found: 3.");
    EXPECT_FALSE(find<QWidget>("heat_map")->isVisible());
    QString reports;
    for (int row = 0; row < 3; ++row)
        reports += window->search().devices().device(row).report;
    EXPECT_TRUE(reports.contains("0x1") && reports.contains("0x3")) << qPrintable(reports);
}

TEST_F(WorkbenchSearch, SaysBadInputInOneSentenceAndKeepsIt)
{
    page_open();
    const struct
    {
        const char* widget;
        QString typed;
        const char* button;
        const char* sentence;
    } rows[] = {
        {"search_channels", "9-31", "search_start", "Channels, character 3: a number from 9 to 30"},
        {"search_channels", "12-9", "search_start", "the range runs backwards"},
        {"search_channels", "9-30", "search_start", "There is no link to a device: connect first."},
        {"search_target", "123", "search_start", "Only address, character 3"},
        {"search_target", "123456", "search_start", "has 4 hexadecimal digits"},
        {"block_address", "12 3x", "block_read", "Address, character 5: not a hexadecimal digit."},
        {"block_address", "12", "block_read", "An address has 4 hexadecimal digits, or 16."},
        {"block_address", "1234", "block_read", "There is no link to a device: connect first."},
    };
    for (const auto& row : rows) {
        type(row.widget, row.typed);
        click(row.button);
        EXPECT_TRUE(said().contains(row.sentence)) << row.sentence << ": " << qPrintable(said());
    }
    type("search_target", "");
    for (const char* const rate : {"search_rate0", "search_rate1", "search_rate2"})
        find<QCheckBox>(rate)->click();
    click("search_start");
    EXPECT_EQ(said(), "There is no rate to search: choose at least one.");
    EXPECT_EQ(questions, 0);
    type("search_channels", "9,x");
    window->close();
    window.reset();
    page_open();
    EXPECT_EQ(text<QLineEdit>("search_channels"), "9,x");
    EXPECT_FALSE(find<QCheckBox>("search_rate1")->isChecked());
}

TEST_F(WorkbenchSearch, WorksByKeysAndNamesItsParts)
{
    configure("search/channels", "9");
    configure("search/rates", 2); // the second alone
    device_start("cnet --device 9,1,0x1234");
    ASSERT_TRUE(connect_module());
    QApplication::setActiveWindow(window.get());
    QTest::keyClick(window.get(), Qt::Key_S, Qt::AltModifier);
    ASSERT_TRUE(wait_until([&] { return window->search().devices().count() == 1; }));
    ASSERT_TRUE(search_end());
    QWidget* const map = find<QWidget>("heat_map");
    QTest::keyClick(map, Qt::Key_Right);
    EXPECT_EQ(text<QLabel>("heat_text"), "Channel 10, 250 kbps: not in this search.");
    QTest::keyClick(map, Qt::Key_Left);
    QTest::keyClick(map, Qt::Key_Down);
    EXPECT_EQ(text<QLabel>("heat_text"), "Channel 9, 500 kbps: one device answered.");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(map)->text(QAccessible::Description),
              "Channel 9, 500 kbps: one device answered.");
    const QPoint middle = map->rect().center();
    QTest::mouseClick(map, Qt::LeftButton, {}, middle);
    QHelpEvent hover(QEvent::ToolTip, middle, map->mapToGlobal(middle));
    QApplication::sendEvent(map, &hover);
    EXPECT_TRUE(QToolTip::text().startsWith("Channel "));
    EXPECT_EQ(QToolTip::text(), text<QLabel>("heat_text"));
    QTest::keyClick(find<QTableView>("devices"), Qt::Key_Return);
    EXPECT_TRUE(says("The configuration of 12 34 is read."));
    for (QWidget* const widget : window->search().findChildren<QWidget*>()) {
        const bool reached = widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                             !widget->objectName().startsWith("qt_"); // parts of others
        const auto* const face = reached ? QAccessible::queryAccessibleInterface(widget) : nullptr;
        EXPECT_FALSE(face && face->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << qPrintable(widget->objectName());
    }
}
