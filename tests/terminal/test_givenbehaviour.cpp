// Behaviour that is given and looks odd. It is meant to stay as it is: a change that makes one of
// these tests fail mends nothing, as users have got used to it and their files count on it.
#include "windowtest.h"

#include <QDir>

using Given = WindowTest;

TEST_F(Given, ReadsATextAnewOnlyWhenItChangesAndAStoredOneAsRaw)
{
    configure("serial_tool/ascii", R"(a\x)");
    configure("serial_tool/raw_text", false);
    window_start();
    ASSERT_TRUE(port_open());
    click(SEND);
    EXPECT_EQ(pty.read(3), R"(a\x)");
    send(R"(a\tb)");
    check(RAW_TEXT);
    click(SEND);
    EXPECT_EQ(pty.read(6), "a\tba\tb");
    send(R"(a\tb )");
    EXPECT_EQ(pty.read(5), R"(a\tb )");
    check(HEX_MODE); // forgets the typed text
    type("41");
    command("action_store");
    check(HEX_MODE, false);
    EXPECT_EQ(typed() + stored("serial_tool/hex"), R"(a\x41)");
}

TEST_F(Given, SaysTwiceThatAStoredTextIsNotHexadecimal)
{
    configure("serial_tool/hex_mode_send", true);
    configure("serial_tool/hex", "4g");
    window_start();
    const QString note = "note|char 'g' at offset 1 is not a hex number";
    EXPECT_EQ(answers.boxes, QStringList({note, note}));
}

TEST_F(Given, LocksWhatTheLastEventNamesWhateverElseIsOn)
{
    const std::tuple<const char*, QStringList, QStringList> modes[] = {
        // mode, what it locks, and what is locked after a close that finds it on
        {HEX_MODE, {RAW_TEXT}, {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, SEND, RAW_TEXT}},
        {SEND_FILE,
         {AUTO_SEND, IN_TURN, HEX_MODE, "pushButton_crc_hash", "plainTextEdit_send",
          "tableWidget_strings"},
         {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, SEND}},
        {AUTO_SEND, {IN_TURN, SEND_FILE}, {AUTO_SEND, LOOP, SEND}},
        {IN_TURN, {AUTO_SEND, SEND_FILE}, {AUTO_SEND, IN_TURN, LOOP, SEND}},
        {LOOP, {AUTO_SEND, IN_TURN}, {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, SEND}},
    };
    window_start();
    for (const auto& [mode, locked, locked_after_close] : modes) {
        ASSERT_TRUE(port_open());
        check(mode);
        EXPECT_EQ(disabled(), locked) << mode;
        check(mode, false);
        EXPECT_EQ(disabled(), QStringList()) << mode;
        check(mode);
        click(OPEN);
        EXPECT_EQ(disabled(), locked_after_close) << mode;
        check(HEX_MODE, false);
        for (const char* const timed : {AUTO_SEND, IN_TURN}) {
            check(timed);
            EXPECT_EQ(boxes_taken(), QStringList("note|please open a port first"));
            EXPECT_FALSE(checked(timed));
        }
    }
    check(SEND_FILE);
    QMetaObject::invokeMethod(window.get(), "on_pushButton_send_clicked");
    EXPECT_EQ(boxes_taken(), QStringList("note|port not opened"));
    check(SEND_FILE, false);
    EXPECT_TRUE(checked(LOOP));
    ASSERT_TRUE(port_open());
    EXPECT_EQ(disabled(), QStringList());
}

TEST_F(Given, ShowsALoadedTextAndLetsLoopUnlockBoxesInFileMode)
{
    configure("serial_tool/ascii", "stored");
    window_start();
    ASSERT_TRUE(port_open());
    file_choose(10);
    check(SEND_FILE);
    EXPECT_EQ(typed(), answers.file);
    command("action_store");
    command("action_load", QFileInfo(INI).absoluteFilePath());
    EXPECT_EQ(typed(), "stored");
    EXPECT_TRUE(checked(SEND_FILE));
    check(LOOP);
    check(LOOP, false);
    EXPECT_TRUE(enabled(AUTO_SEND) && enabled(IN_TURN));
}

TEST_F(Given, StoresInSilenceWhereAFileCannotBe)
{
    QFile::link("loop.ini", "loop.ini"); // nobody can open it
    QDir().mkdir("folder.ini");
    for (const char* const file : {"loop.ini", "folder.ini"}) {
        configure("global/cfg_file", file);
        window_start();
        type("typed");
        command("action_store");
        EXPECT_EQ(typed(), "typed");
    }
    EXPECT_TRUE(answers.boxes.isEmpty());
}
