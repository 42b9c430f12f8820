#include "workbench/settingspage.h"
#include "workbenchtest.h"

#include <QAccessible>
#include <QClipboard>
#include <QTabWidget>
#include <QTableView>
#include <captures.h>
#include <set>

class WorkbenchSettings : public Workbench
{
protected:
    // A Dorv module, and the window with the page on its port.
    void dorv_start(const QString& options = {})
    {
        module = std::make_unique<Simulated>("dorv --settings " + sandbox.path("dorv") + options);
        configure("workbench/link", "serial:" + module->address + ",115200,8N1");
        configure("workbench/frame", "none");
        configure("workbench/timeout", 300); // each read of a setting takes that long
        window_start();
        find<QTabWidget>("pages")->setCurrentIndex(1);
    }
    // The end of the run that the click starts, said in the page.
    bool run(const char* button)
    {
        click(button);
        return wait_until([&] { return !window->settings().busy(); });
    }
    QString cell(const char* name, SettingsTable::Column column) const
    {
        const SettingsTable& table = window->settings().settings();
        for (int row = 0; row < table.rowCount(); ++row) {
            if (table.setting(row).name == name)
                return table.index(row, column).data().toString();
        }
        return "no such row";
    }
    QTableView* choose_setting(const char* name) const
    {
        auto* const table = find<QTableView>("settings_table");
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            if (table->model()->index(row, SettingsTable::NAME).data() == name)
                table->setCurrentIndex(table->model()->index(row, SettingsTable::NAME));
        }
        return table;
    }
    // Each exchange takes the time-out, so some tests have one.
    bool read_one(const char* name)
    {
        choose_setting(name);
        return run("settings_read");
    }
    void type_value(const char* name, const QString& value)
    {
        QTableView* const table = choose_setting(name);
        QTest::keyClick(table, Qt::Key_F2);
        auto* const editor = table->findChild<QLineEdit*>();
        ASSERT_TRUE(editor) << name;
        editor->selectAll();
        QTest::keyClicks(editor, value);
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_TRUE(wait_until([&] { return !table->findChild<QLineEdit*>(); }));
    }
    QString said() const { return notice("settings_notice"); }
    QString recorded() const { return notice("record_notice"); }
};

TEST_F(WorkbenchSettings, ReadsAllChangesThreeWritesThemAndReadsThemBack)
{
    dorv_start();
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(run("settings_read_all"));
    EXPECT_EQ(said(), "Settings read: 10 of 10.");
    EXPECT_EQ(cell("deveui", SettingsTable::HELD), "0011223344556677");
    EXPECT_EQ(cell("heartbeat", SettingsTable::STATE), "read");
    type_value("deveui", "01 02 03 04 05 06 07 08");
    type_value("heartbeat", "1 2  3");
    type_value("freq", "470300000");
    EXPECT_EQ(cell("heartbeat", SettingsTable::VALUE), "1 2 3");
    EXPECT_EQ(cell("heartbeat", SettingsTable::HELD), "0 0 0");
    EXPECT_EQ(window->settings().settings().differing().size(), 3);
    ASSERT_TRUE(run("settings_write_differing"));
    EXPECT_EQ(said(), "Settings written: 3 of 3.");
    EXPECT_EQ(cell("heartbeat", SettingsTable::STATE), "written, and read back");
    EXPECT_EQ(cell("freq", SettingsTable::STATE), "written");
    chosen = sandbox.path("settings.txt");
    click("settings_save");

    const QByteArray held = file_content(sandbox.path("dorv"));
    for (const char* const line :
         {"deveui=0102030405060708\n", "heartbeat=1,2,3\n", "freq=470300000\n", "sf=7\n"})
        EXPECT_TRUE(held.contains(line)) << line;

    // Another module knows nothing of it; the file does.
    click("connect");
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    module.reset();
    QFile::remove(sandbox.path("dorv"));
    module = std::make_unique<Simulated>("dorv --settings " + sandbox.path("dorv"));
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(run("settings_read_all"));
    EXPECT_EQ(cell("heartbeat", SettingsTable::VALUE), "0 0 0");
    click("settings_compare");
    EXPECT_EQ(window->settings().settings().differing().size(), 3) << qPrintable(said());
    ASSERT_TRUE(run("settings_write_differing"));
    EXPECT_EQ(said(), "Settings written: 3 of 3.");
    EXPECT_EQ(file_content(sandbox.path("dorv")), held);
    EXPECT_EQ(questions, 0);
}

TEST_F(WorkbenchSettings, SaysWhatIsWrongInOneSentenceAndKeepsWhatIsTyped)
{
    dorv_start(" --silent-after 2");
    file_write(sandbox.path("bad.txt"), "freq 1\nsf 7 8\n");
    click("settings_read_all");
    EXPECT_TRUE(said().startsWith("There is no link")) << qPrintable(said());
    click("settings_write_differing");
    EXPECT_TRUE(said().startsWith("There is nothing to write")) << qPrintable(said());
    type_value("pwr", "256");
    EXPECT_EQ(cell("pwr", SettingsTable::STATE), "POWER is a number from 0 to 255");
    click("settings_write_differing");
    EXPECT_TRUE(said().endsWith("pwr: POWER is a number from 0 to 255.")) << qPrintable(said());
    chosen = sandbox.path("bad.txt");
    click("settings_compare");
    EXPECT_EQ(said(), "bad.txt, line 2: sf takes: SF.");
    type_value("pwr", "10");
    file_write(chosen, "pwr 11");
    yes = false;
    click("settings_compare"); // asks before it replaces what is typed
    EXPECT_EQ(questions, 1);

    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(run("settings_write_differing"));
    EXPECT_EQ(cell("pwr", SettingsTable::STATE), "written") << qPrintable(said());
    type_value("pwr", "12");
    ASSERT_TRUE(run("settings_read_all")); // falls silent in it
    EXPECT_TRUE(said().startsWith("The module doesn't answer for ")) << qPrintable(said());
    EXPECT_EQ(cell("pwr", SettingsTable::VALUE), "12");
    module->process.kill();
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    EXPECT_EQ(cell("pwr", SettingsTable::VALUE), "12");
    EXPECT_EQ(cell("pwr", SettingsTable::HELD), "10");
    EXPECT_EQ(questions, 1);
    window->close(); // asks before it drops what is typed
    EXPECT_TRUE(window->isVisible());
}

TEST_F(WorkbenchSettings, SurvivesALinkThatClosesInTheMiddle)
{
    dorv_start(" --delay 50");
    ASSERT_TRUE(connect_module());
    click("settings_read_all");
    ASSERT_TRUE(wait_until([&] { return find<QProgressBar>("settings_progress")->value() > 2; }));
    module->process.kill();
    ASSERT_TRUE(wait_until([&] { return !window->settings().busy(); }));
    EXPECT_TRUE(said().contains("has gone") || said().contains("is lost")) << qPrintable(said());
    EXPECT_EQ(cell("class", SettingsTable::HELD), "a");
    EXPECT_EQ(cell("nwkskey", SettingsTable::STATE), "");
}

TEST_F(WorkbenchSettings, AsksBeforeItClosesDuringARunAndStopsCleanly)
{
    dorv_start(" --delay 50");
    ASSERT_TRUE(connect_module());
    click("settings_read_all");
    yes = false;
    window->close();
    EXPECT_TRUE(window->isVisible() && window->settings().busy());
    yes = true;
    window->close();
    EXPECT_TRUE(wait_until([&] { return !window->isVisible(); }));
    EXPECT_TRUE(said().startsWith("Stopped. Settings read: ")) << qPrintable(said());
    EXPECT_EQ(questions, 2);
}

TEST_F(WorkbenchSettings, WorksByKeysAloneAndCopiesTheLinkForAShell)
{
    dorv_start();
    find<QTabWidget>("pages")->setCurrentIndex(0);
    QApplication::setActiveWindow(window.get());
    const auto press = [&](Qt::Key key) { QTest::keyClick(window.get(), key, Qt::AltModifier); };
    press(Qt::Key_U);
    press(Qt::Key_C);
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "connected"; }));
    press(Qt::Key_B);
    EXPECT_TRUE(wait_until([&] { return said() == "The module takes commands."; }));
    press(Qt::Key_A);
    EXPECT_TRUE(wait_until([&] { return said() == "Settings read: 10 of 10."; }));
    EXPECT_EQ(QApplication::focusWidget(), find<QWidget>("settings_table"));
    std::set<QWidget*> reached;
    for (int step = 0; step < 60; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (const char* const name : {"record", "settings_table", "command_mode", "settings_read",
                                   "settings_compare", "settings_save", "settings_write"})
        EXPECT_EQ(reached.count(find<QWidget>(name)), 1u) << name;
    for (QWidget* const widget : reached)
        EXPECT_NE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name), "")
            << widget->metaObject()->className() << qPrintable(widget->objectName());
    press(Qt::Key_C);
    ASSERT_TRUE(wait_until([&] { return text<QLabel>("connection_state") == "not connected"; }));
    type("link_text", "serial:/dev/my port,9600,8N1");
    press(Qt::Key_Y);
    EXPECT_TRUE(wait_until([&] {
        return QApplication::clipboard()->text() ==
               "--link 'serial:/dev/my port,9600,8N1' --frame none";
    })) << qPrintable(QApplication::clipboard()->text());
}

TEST_F(WorkbenchSettings, RecordsWhatPassesTheLinkAndSaysWhereAndWhyNot)
{
    dorv_start();
    file_write(sandbox.path("notes.txt"), "not a capture");
    for (const QString& bad : {sandbox.path("none/x.pcapng"), sandbox.path("notes.txt")}) {
        chosen = bad;
        click("record");
        ASSERT_TRUE(wait_until([&] {
            return recorded().startsWith("There is no recording") && recorded().contains(bad);
        }));
        EXPECT_EQ(text<QPushButton>("record"), "Record...");
    }
    chosen = sandbox.path("session.pcapng");
    click("record");
    ASSERT_TRUE(wait_until([&] { return recorded().startsWith("Recording"); }));
    EXPECT_EQ(text<QPushButton>("record"), "Stop recording");
    ASSERT_TRUE(connect_module());
    ASSERT_TRUE(read_one("deveui"));
    EXPECT_EQ(text<QPushButton>("record"), "Stop recording");
    click("record");
    ASSERT_TRUE(wait_until([&] { return recorded().contains("is in"); }));
    ASSERT_TRUE(read_one("deveui")); // no more of it
    QByteArray sent;
    QByteArray received;
    for (const CaptureRecord& record : read_records(file_content(chosen))) {
        if (record.event == CaptureEvent::DataSent)
            sent += record.bytes;
        else if (record.event == CaptureEvent::DataReceived)
            received += record.bytes;
    }
    EXPECT_EQ(sent.count("=?"), 1);
    EXPECT_EQ(received, "0011223344556677\r\n");
    EXPECT_TRUE(read_lines(file_content(chosen)).join('\n').contains(module->address));
}

TEST_F(WorkbenchSettings, ARecordingOnAFullDiskSaysHowMuchIsMissing)
{
    dorv_start();
    chosen = sandbox.path("session.pcapng");
    click("record");
    ASSERT_TRUE(wait_until([&] { return recorded().startsWith("Recording"); }));
    ASSERT_TRUE(connect_module());
    {
        const FullAt full(1);
        ASSERT_TRUE(read_one("deveui"));
        ASSERT_TRUE(wait_until([&] { return recorded().contains("can't be written"); }));
        click("record");
        EXPECT_TRUE(wait_until([&] { return recorded().contains("bytes are missing"); }))
            << qPrintable(recorded());
    }
    EXPECT_EQ(said(), "Settings read: 1 of 1.");
}
