#include "windowtest.h"

#include <QDateTime>
#include <QDir>
#include <QDockWidget>

using Config = WindowTest;

TEST_F(Config, WritesOnlyWhatIsNotAsItWas)
{
    QFile::remove(INI);
    window_start();
    EXPECT_EQ(window->windowTitle(), "Tarnwick [tarnwick.ini]");
    EXPECT_EQ(table()->rowCount(), 8);
    window->move(50, 60); // where Qt doesn't correct a restored place
    window_end();
    EXPECT_EQ(QSettings(INI, QSettings::IniFormat).allKeys(),
              QStringList({"strings/size", "window/geometry", "window/state"}));
    configure("somebody/else", "keeps, this");
    configure("serial_tool/ascii", "AT\n\u4F60");
    configure("strings/2/value", "text");
    const QByteArray before = file_content(INI);
    file_write(INI, before); // with a time to come
    const QDateTime written = QFileInfo(INI).lastModified();
    window_start();
    EXPECT_EQ(typed(), "AT\n\u4F60");
    window_end();
    EXPECT_EQ(file_content(INI), before);
    EXPECT_EQ(QFileInfo(INI).lastModified(), written);
}

TEST_F(Config, KeepsEachOption)
{
    const std::tuple<const char*, const char*, const char*, QVariant, QVariant> options[] = {
        {"display_tx", SHOW_SENT, "checked", false, true},
        {"display_time", "checkBox_display_time", "checked", false, true},
        {"frame_mode", "checkBox_frame_mode", "checked", false, true},
        {"frame_interval", "spinBox_frame_interval", "value", 5, 500},
        {"hex_display", "checkBox_hex_display", "checked", false, true},
        {"auto_clr", "checkBox_window_auto_clr", "checked", false, true},
        {"auto_clr_threshold", "spinBox_auto_clr_threshold", "value", 100, 99999},
        {"hex_mode_send", HEX_MODE, "checked", false, true},
        {"send_interval", "spinBox_send_interval", "value", 10, 9999},
        {"send_count", "spinBox_send_count", "value", 0, -1},
        {"raw_text", RAW_TEXT, "checked", false, true},
        {"send_in_turn_interval", "spinBox_send_in_turn_interval", "value", 20, 10000},
        {"save2file", "lineEdit_save2file_path", "text", "", "a b, c;%1.log"},
    };
    window_start();
    for (const auto& [key, widget, property, fallback, other] : options)
        EXPECT_EQ(find<QWidget>(widget)->property(property), fallback) << key;
    for (const bool changed : {true, false}) {
        for (const auto& [key, widget, property, fallback, other] : options)
            find<QWidget>(widget)->setProperty(property, changed ? other : fallback);
        window_start();
        for (const auto& [key, widget, property, fallback, other] : options) {
            const QVariant expected = changed ? other : fallback;
            EXPECT_EQ(find<QWidget>(widget)->property(property), expected) << key;
            EXPECT_EQ(stored(QString("serial_tool/") + key), expected.toString()) << key;
        }
    }
}

TEST_F(Config, KeepsTheListAndAtLeastEightRows)
{
    const QString odd_text = "three, @ \"quoted\" \u4F60\\";
    file_write("small.ini", "[strings]\nsize=2\n2\\value=two\n2\\ishex=true\n7\\alias=none\n");
    window_start();
    table()->setCurrentCell(7, VALUE_COLUMN);
    for (int i = 0; i < 4; ++i)
        click("pushButton_table_row_add");
    set_row(2, true, false, odd_text);
    set_row(3, false, true, "4");
    alias(3)->setText("four");
    window_start();
    EXPECT_EQ(table()->rowCount(), 12);
    EXPECT_EQ(value(2)->text() + alias(3)->text(), odd_text + "four");
    set_row(3, false, false, "");
    click("pushButton_extend");
    ASSERT_TRUE(wait_until([&] { return window->isActiveWindow(); }));
    table()->setCurrentCell(4, VALUE_COLUMN);
    QTest::keyClicks(table()->findChild<QLineEdit*>(), "still open");
    command("action_store");
    QSettings file(INI, QSettings::IniFormat);
    file.beginGroup("strings");
    EXPECT_EQ(file.allKeys(), QStringList({"3/in_turn", "3/value", "4/alias", "5/value", "size"}));
    command("action_load", QFileInfo("small.ini").absoluteFilePath());
    EXPECT_EQ(table()->rowCount(), 8);
    EXPECT_EQ(value(1)->text() + value(2)->text() + alias(6)->text(), "two");
    EXPECT_EQ(value(1)->checkState(), Qt::Checked);
}

TEST_F(Config, NeverLosesTheControlPanelAndHidesTheOther)
{
    window_start();
    auto* panel = find<QDockWidget>("dockWidget");
    panel->setFloating(true);
    panel->close(); // a desktop's own way
    EXPECT_TRUE(wait_until([&] { return panel->isVisible(); }));
    panel->hide(); // the application's way, before the last store
    click("pushButton_extend");
    EXPECT_EQ(label("pushButton_extend"), "&hide>>");
    window_start();
    panel = find<QDockWidget>("dockWidget");
    EXPECT_TRUE(panel->isFloating());
    EXPECT_TRUE(wait_until([&] { return panel->isVisible(); }));
    EXPECT_FALSE(find<QDockWidget>("dockWidget_extend")->isVisible());
    EXPECT_EQ(label("pushButton_extend"), "&extend<<");
}

TEST_F(Config, MovesToTheFileOfStoreAsAndLoad)
{
    configure("serialSettings/port", 3);
    window_start();
    type("abc");
    const QString other = sandbox.path("other.ini");
    for (const QString& chosen : {QString(), other}) { // the first dialog is cancelled
        command("action_store_as", chosen);
        EXPECT_EQ(window->windowTitle().contains("other.ini"), chosen == other);
    }
    EXPECT_EQ(stored("global/cfg_file"), other);
    EXPECT_EQ(stored("serial_tool/ascii", other) + stored("global/language", other), "abcen_US");
    EXPECT_EQ(stored("serialSettings/port", other) + stored("serial_tool/ascii"), "");
    window_start();
    EXPECT_EQ(typed(), "abc");
    command("action_load", other);
    EXPECT_EQ(stored("global/cfg_file"), other); // the root file learns of it at the next store
    window_end();
    EXPECT_EQ(stored("global/cfg_file"), QDir("./").relativeFilePath(other));
}

TEST_F(Config, StartsWithAnyFile)
{
    file_write("rubbish.ini", mixed_bytes(20000));
    file_write("types.ini",
               "[serial_tool]\nframe_interval=soon\nauto_clr=@Variant(\\0\\0)\nsend_count=1e9\n"
               "send_interval=99999999999999\nraw_text=@Point(1 2)\nascii=a,b,c\n"
               "[strings]\nsize=-5\n1\\value=@Invalid()\n[window]\ngeometry=@ByteArray(x)\n"
               "state=12\n");
    file_write("huge.ini", "[strings]\nsize=2147483647\n9\\value=nine\n");
    const std::tuple<const char*, int, const char*> files[] = {{"rubbish.ini", 8, ""},
                                                               {"types.ini", 8, "a,b,c"},
                                                               {"huge.ini", 9, ""},
                                                               {"missing/folder/x.ini", 8, ""}};
    for (const auto& [file, rows, text] : files) {
        configure("global/cfg_file", file);
        window_start();
        EXPECT_EQ(table()->rowCount(), rows) << file;
        EXPECT_EQ(typed(), text);
        EXPECT_GE(find<QSpinBox>("spinBox_frame_interval")->value(), 1);
        type("typed");
        window_end();
        EXPECT_EQ(stored("serial_tool/ascii", file), "typed");
    }
    EXPECT_EQ(stored("strings/9/value", "huge.ini"), "nine");
    EXPECT_TRUE(answers.boxes.isEmpty());
}
