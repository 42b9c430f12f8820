#include "terminal/stringcolumns.h"
#include "windowtest.h"

#include <QAction>
#include <QDateTime>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLineEdit>
#include <QSettings>
#include <unistd.h>

namespace {

const char INI[] = "tarnwick.ini";

QVariant stored(const QString& key, const QString& path = INI)
{
    return QSettings(path, QSettings::IniFormat).value(key);
}

class Config : public WindowTest
{
protected:
    void restart()
    {
        window_end();
        window_start();
    }
    void command(const char* action, const QString& file = {})
    {
        answers.file = file;
        find<QAction>(action)->trigger();
    }
};

} // namespace

TEST_F(Config, FirstRunWritesTheWindowAndTheSizeOfTheList)
{
    QFile::remove(INI);
    window_start();
    EXPECT_EQ(window->windowTitle(), "Tarnwick [tarnwick.ini]");
    EXPECT_EQ(table()->rowCount(), 8);
    window_end();
    EXPECT_EQ(QSettings(INI, QSettings::IniFormat).allKeys(),
              QStringList({"strings/size", "window/geometry", "window/state"}));
    EXPECT_EQ(stored("strings/size"), "8");
}

TEST_F(Config, UnchangedCloseLeavesTheFileAlone)
{
    configure("somebody/else", "keeps, this");
    configure("global/unknown", 5);
    window_start();
    window->move(50, 60); // where Qt doesn't correct a restored place
    type("AT\n\u4F60");
    table()->item(3, VALUE_COLUMN)->setText("text");
    window_end();
    const QDateTime long_ago = QDateTime::fromSecsSinceEpoch(1000000000);
    QFile file(INI);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(long_ago, QFileDevice::FileModificationTime);
    file.close();
    const QByteArray before = file_content(INI);
    window_start();
    EXPECT_EQ(typed(), "AT\n\u4F60");
    window_end();
    EXPECT_EQ(file_content(INI).toStdString(), before.toStdString());
    EXPECT_EQ(QFileInfo(INI).lastModified(), long_ago);
    EXPECT_EQ(stored("somebody/else"), "keeps, this");
    EXPECT_EQ(stored("global/unknown"), "5");
}

TEST_F(Config, KeepsEachOption)
{
    const struct
    {
        const char* key;
        const char* widget;
        const char* property;
        QVariant fallback;
        QVariant other;
    } options[] = {
        {"display_tx", "checkBox_display_tx", "checked", false, true},
        {"display_time", "checkBox_display_time", "checked", false, true},
        {"frame_mode", "checkBox_frame_mode", "checked", false, true},
        {"frame_interval", "spinBox_frame_interval", "value", 5, 500},
        {"hex_display", "checkBox_hex_display", "checked", false, true},
        {"auto_clr", "checkBox_window_auto_clr", "checked", false, true},
        {"auto_clr_threshold", "spinBox_auto_clr_threshold", "value", 100, 99999},
        {"hex_mode_send", "checkBox_hex_mode", "checked", false, true},
        {"send_interval", "spinBox_send_interval", "value", 10, 9999},
        {"send_count", "spinBox_send_count", "value", 0, -1},
        {"raw_text", "checkBox_raw_text", "checked", false, true},
        {"send_in_turn_interval", "spinBox_send_in_turn_interval", "value", 20, 10000},
        {"save2file", "lineEdit_save2file_path", "text", "", "a b, c;%1.log"},
    };
    window_start();
    for (const auto& option : options)
        EXPECT_EQ(find<QWidget>(option.widget)->property(option.property), option.fallback)
            << option.key;
    for (const bool changed : {true, false}) {
        for (const auto& option : options)
            find<QWidget>(option.widget)
                ->setProperty(option.property, changed ? option.other : option.fallback);
        restart();
        for (const auto& option : options) {
            const QVariant expected = changed ? option.other : option.fallback;
            EXPECT_EQ(find<QWidget>(option.widget)->property(option.property), expected)
                << option.key;
            EXPECT_EQ(stored(QString("serial_tool/") + option.key).toString(), expected.toString())
                << option.key;
        }
    }
}

TEST_F(Config, KeepsTheTextOfEachMode)
{
    configure("serial_tool/ascii", R"(not \x escaped)"); // raw at the start, whatever is stored
    window_start();
    EXPECT_EQ(typed(), R"(not \x escaped)");
    type("a");
    check("checkBox_hex_mode");
    EXPECT_EQ(typed(), "");
    type("41");
    command("action_store");
    check("checkBox_hex_mode", false);
    EXPECT_EQ(typed(), R"(not \x escaped)");
    file_write("file", "content");
    answers.file = sandbox.path("work/file");
    check("checkBox_send_file");
    command("action_store");
    EXPECT_EQ(stored("serial_tool/ascii"), R"(not \x escaped)");
    EXPECT_EQ(stored("serial_tool/hex"), "41");
    EXPECT_EQ(answers.boxes, QStringList("note|format error at 5: x")); // when hex mode was left
}

TEST_F(Config, KeepsTheListAndAtLeastEightRows)
{
    configure("strings/size", 3);
    configure("strings/2/value", "two");
    configure("strings/2/ishex", true);
    configure("strings/7/alias", "beyond the size");
    window_start();
    EXPECT_EQ(table()->rowCount(), 8);
    EXPECT_EQ(table()->item(1, VALUE_COLUMN)->text(), "two");
    EXPECT_EQ(table()->item(1, VALUE_COLUMN)->checkState(), Qt::Checked);
    table()->item(2, ALIAS_COLUMN)->setCheckState(Qt::Checked);
    table()->item(2, ALIAS_COLUMN)->setText("three, @ \"quoted\" \u4F60\\");
    table()->item(1, VALUE_COLUMN)->setCheckState(Qt::Unchecked);
    table()->setCurrentCell(7, 2);
    for (int i = 0; i < 4; ++i)
        click("pushButton_table_row_add");
    restart();
    EXPECT_EQ(table()->rowCount(), 12);
    EXPECT_EQ(table()->item(2, ALIAS_COLUMN)->text(), "three, @ \"quoted\" \u4F60\\");
    click("pushButton_extend");
    table()->setCurrentCell(2, VALUE_COLUMN);
    ASSERT_TRUE(wait_until([&] { return window->isActiveWindow(); }));
    QTest::keyClicks(table()->findChild<QLineEdit*>(), "still open");
    command("action_store", QString());
    QSettings file(INI, QSettings::IniFormat);
    file.beginGroup("strings");
    EXPECT_EQ(file.allKeys(), QStringList({"2/value", "3/alias", "3/in_turn", "3/value", "size"}));

    file_write("small.ini", "[strings]\nsize=2\n1\\value=one\n");
    command("action_load", QFileInfo("small.ini").absoluteFilePath());
    EXPECT_EQ(table()->rowCount(), 8);
    EXPECT_EQ(table()->item(0, VALUE_COLUMN)->text(), "one");
    EXPECT_EQ(table()->item(1, VALUE_COLUMN)->text(), "");
}

TEST_F(Config, NeverLosesTheControlPanel)
{
    window_start();
    auto* const panel = find<QDockWidget>("dockWidget");
    panel->setFloating(true);
    panel->close(); // a desktop's own way
    EXPECT_TRUE(wait_until([&] { return panel->isVisible(); }));
    panel->hide(); // the application's way, before the last store
    restart();
    EXPECT_TRUE(find<QDockWidget>("dockWidget")->isFloating());
    EXPECT_TRUE(wait_until([&] { return find<QDockWidget>("dockWidget")->isVisible(); }));
}

TEST_F(Config, MovesToTheFileOfStoreAsAndLoad)
{
    configure("serialSettings/port", 3);
    window_start();
    type("abc");
    command("action_store_as"); // cancelled
    EXPECT_EQ(window->windowTitle(), "Tarnwick [tarnwick.ini]");
    const QString other = sandbox.path("other.ini");
    command("action_store_as", other);
    EXPECT_EQ(window->windowTitle(), "Tarnwick [other.ini]");
    EXPECT_EQ(stored("global/cfg_file"), other);
    EXPECT_EQ(stored("serial_tool/ascii", other), "abc");
    EXPECT_EQ(stored("global/language", other), "en_US");
    EXPECT_FALSE(stored("serialSettings/port", other).isValid());
    EXPECT_FALSE(stored("serial_tool/ascii").isValid());
    restart();
    EXPECT_EQ(typed(), "abc");

    command("action_load", other);
    EXPECT_EQ(window->windowTitle(), "Tarnwick [other.ini]");
    EXPECT_EQ(stored("global/cfg_file"), other); // the root file learns of it at the next store
    window_end();
    EXPECT_EQ(stored("global/cfg_file"), QDir("./").relativeFilePath(other));
}

TEST_F(Config, StartsWithAnyFile)
{
    QFile::link("loop.ini", "loop.ini"); // nobody can open it
    QDir().mkdir("folder.ini");
    file_write("rubbish.ini", mixed_bytes(20000));
    file_write("types.ini",
               "[serial_tool]\nframe_interval=soon\nauto_clr=@Variant(\\0\\0)\nsend_count=1e9\n"
               "send_interval=99999999999999\nraw_text=@Point(1 2)\nascii=a,b,c\n"
               "[strings]\nsize=-5\n1\\value=@Invalid()\n[window]\ngeometry=@ByteArray(x)\n"
               "state=12\n");
    file_write("huge.ini", "[strings]\nsize=2147483647\n9\\value=nine\n");
    const std::tuple<const char*, int, const char*> cases[] = {
        {"loop.ini", 8, ""},       {"folder.ini", 8, ""}, {"rubbish.ini", 8, ""},
        {"types.ini", 8, "a,b,c"}, {"huge.ini", 9, ""},   {"missing/folder/x.ini", 8, ""}};
    for (const auto& [file, rows, text] : cases) {
        SCOPED_TRACE(file);
        QFile::remove(INI);
        configure("global/cfg_file", file);
        window_start();
        EXPECT_EQ(table()->rowCount(), rows);
        EXPECT_EQ(typed(), text);
        EXPECT_GE(find<QSpinBox>("spinBox_frame_interval")->value(), 1);
        type("typed");
        command("action_store");
        EXPECT_EQ(typed(), "typed");
        EXPECT_TRUE(answers.boxes.isEmpty());
        window_end();
    }
    EXPECT_EQ(stored("strings/9/value", "huge.ini"), "nine");
    EXPECT_EQ(stored("serial_tool/ascii", "missing/folder/x.ini"), "typed");
}

// That of a program killed between making and filling it; Qt alone waits 30 s for its
// owner.
TEST_F(Config, StoresDespiteAnEmptyLock)
{
    QElapsedTimer clock;
    clock.start();
    window_start();
    type("kept");
    file_write("tarnwick.ini.lock", "");
    window_end();
    EXPECT_EQ(stored("serial_tool/ascii"), "kept");
    EXPECT_LT(clock.elapsed(), PATIENCE_MS);
}
