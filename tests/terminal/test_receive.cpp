#include "windowtest.h"

#include <QTextBlock>

namespace {

constexpr char PAUSE[] = "pushButton_dsiplay_pause", CLEAR[] = "pushButton_recv_clr",
               FRAMES[] = "checkBox_frame_mode", STAMPS[] = "checkBox_display_time",
               HEX[] = "checkBox_hex_display", SAVE[] = "checkBox_save2file",
               SAVE_WINDOW[] = "pushButton_window_save";

// A window whose clock stops until the test moves it.
class Receive : public WindowTest
{
protected:
    Receive()
    {
        clock = [this] { return clock_now; };
        window_start();
        EXPECT_TRUE(port_open());
    }

    // A chunk that comes `ms` after the last one.
    void chunk(const QByteArray& data, int ms = 0)
    {
        clock_now = clock_now.addMSecs(ms);
        total += data.size();
        ASSERT_TRUE(receive(data, total));
    }
    void clear()
    {
        click(CLEAR);
        total = 0;
    }
    void save_to(const QString& path)
    {
        find<QLineEdit>("lineEdit_save2file_path")->setText(path);
        find<QCheckBox>(SAVE)->click();
    }

    QTime clock_now = QTime(12, 0, 0);
    const QString path = sandbox.path("saved");
    int total = 0;
};

} // namespace

TEST_F(Receive, BreaksAndStampsFramesByTheirSilence)
{
    chunk("unwatched", 1000);
    check(FRAMES);
    chunk("first", 1); // the gap is that from the start
    chunk(" same\xE6", 5);
    chunk("\xB8\xA9", 6); // no part of what the last frame has cut
    EXPECT_EQ(shown(), "unwatched\nfirst same\uFFFD\n\uFFFD\uFFFD");
    clear();
    chunk("a", 1000); // the first one begins no line
    check(STAMPS);
    chunk("b", 86400000 - 12 * 3600000); // past midnight
    check(FRAMES, false);
    set("spinBox_frame_interval", 100);
    chunk("c", 100);
    chunk("d", 101);
    EXPECT_EQ(shown(), "a\n[00:00:02.012] bc[00:00:02.213] d");
}

TEST_F(Receive, ShowsTextUpToAZeroByteAndSavesAll)
{
    const QByteArray text = "caf\xC3\xA9 \xE4\xBD\xA0", bytes("A\r\0\xFF", 4);
    file_write(path, "old ");
    answers.file = path;
    click("pushButton_save2file_browse");
    find<QCheckBox>(SAVE)->click();
    chunk(text + bytes);
    check(HEX);
    chunk(bytes);
    EXPECT_EQ(shown(), "caf\u00E9 \u4F60A\n41 0D 00 FF ");
    find<QCheckBox>(SAVE)->click();
    EXPECT_EQ(file_content(path), "old " + text + bytes + "41 0D 00 FF ");
    click(SAVE_WINDOW);
    EXPECT_EQ(file_content(path), "caf\xE9 ?A\n41 0D 00 FF ");
}

TEST_F(Receive, PutsWhatWasTypedOnABlueLineOfItsOwn)
{
    const auto* const area = find<QPlainTextEdit>("plainTextEdit_recv");
    check(FRAMES);
    check(SHOW_SENT);
    send("sent\\t\u4f60");
    chunk("received\xE6", 1000);
    // A reader's click on a blue line leaves what follows as it is.
    QTest::mouseClick(area->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    check(STAMPS);
    click(SEND);
    chunk("\xB8\xA9", 6); // the stamp of a sent line isn't the start of its gap
    EXPECT_EQ(shown(), "sent\\t?\nreceived\uFFFD\n[12:00:01.000] sent\\t?\n"
                       "[12:00:01.006] \uFFFD\uFFFD");
    QStringList blue_lines;
    for (QTextBlock block = area->document()->begin(); block.isValid(); block = block.next())
        if (block.begin().fragment().charFormat().foreground() == QBrush(Qt::blue))
            blue_lines += block.text();
    EXPECT_EQ(blue_lines, QStringList({"sent\\t?", "[12:00:01.000] sent\\t?"}));
}

TEST_F(Receive, PausesTheDisplayOnly)
{
    check(FRAMES);
    check(SHOW_SENT);
    chunk("shown", 1000);
    click(PAUSE);
    send("abc");
    chunk("hidden", 3);
    EXPECT_EQ(label(PAUSE) + shown(), "&resumeshown");
    save_to(path);
    chunk("saved", 1000);
    click(PAUSE);
    chunk("resumed", 2);
    EXPECT_EQ(label(PAUSE) + shown(), "&pauseshownresumed");
    find<QCheckBox>(SAVE)->click();
    EXPECT_EQ(file_content(path), "\nsavedresumed");
    EXPECT_EQ(counters(), "CNT: 1 TX: 3 RX: 23");
    click(PAUSE);
    clear();
    EXPECT_EQ(label(PAUSE) + shown(), "&resume");
    EXPECT_EQ(counters(), "CNT: 1 TX: 0 RX: 0");
}

TEST_F(Receive, ClearsOldLinesByItselfAndSavesThem)
{
    set("spinBox_auto_clr_threshold", 6); // nothing goes before the box is checked
    chunk("1\n2\n3\n4\n5\n6\n7\n8");
    EXPECT_EQ(shown(), "1\n2\n3\n4\n5\n6\n7\n8");
    check("checkBox_window_auto_clr");
    set("spinBox_auto_clr_threshold", 5);
    EXPECT_EQ(shown(), "4\n5\n6\n7\n8");
    save_to(path);
    const QByteArray much = mixed_bytes(2000000);
    chunk(much);
    chunk("\n\n\n\n\n9");
    EXPECT_EQ(shown(), "\n\n\n\n9");
    click(OPEN); // the file goes on existing
    find<QCheckBox>(SAVE)->click();
    EXPECT_TRUE(file_content(path) == much + "\n\n\n\n\n9");
}

TEST_F(Receive, EchoesInLoopModeUntilNobodyReads)
{
    check(SHOW_SENT);
    type("not typed");
    check(AUTO_SEND); // which loop mode ends
    check(LOOP);
    EXPECT_FALSE(checked(AUTO_SEND));
    chunk("ping");
    chunk("pong!");
    EXPECT_EQ(pty.read(9), "pingpong!");
    EXPECT_EQ(counters() + shown(), "CNT: 2 TX: 9 RX: 9pingpong!");
    const QByteArray block = mixed_bytes(4096);
    EXPECT_TRUE(wait_until([&] {
        const ssize_t n = ::write(pty.master_fd(), block.constData(), size_t(block.size()));
        return n < 0 && closed(); // nobody takes any more
    }));
    EXPECT_EQ(boxes_taken().join('/').section(": ", 0, 0), "note|port write error");
    ASSERT_TRUE(port_open()); // a session like any other
    pty.unlink();
    EXPECT_TRUE(wait_until([this] { return closed(); }));
}

TEST_F(Receive, SaysOnceWhichFileTakesNoMore)
{
    auto* const bar = find<QStatusBar>("statusBar");
    const QString note = "file can't be written: No space left on device: /dev/full";
    const std::tuple<const char*, int, QString> steps[] = {
        {SAVE, 9, ""}, // held back in the file's buffer
        {nullptr, 30000, note}, {nullptr, 30000, ""}, {SAVE, 0, ""}, // ends saving
        {SAVE, 9, ""},          {SAVE, 0, note}, // once for each time that it is opened
        {SAVE_WINDOW, 0, note},
    };
    find<QLineEdit>("lineEdit_save2file_path")->setText("/dev/full");
    answers.file = "/dev/full";
    for (const auto& [button, size, expected] : steps) {
        if (button)
            find<QAbstractButton>(button)->click();
        chunk(QByteArray(size, 'x'));
        EXPECT_EQ(bar->currentMessage(), expected) << size;
        bar->clearMessage();
    }
    EXPECT_TRUE(answers.boxes.isEmpty());
    answers.file = sandbox.path("no/such/folder");
    for (const QString& name : {QString(), answers.file})
        save_to(name);
    EXPECT_FALSE(checked(SAVE));
    click(SAVE_WINDOW);
    EXPECT_EQ(answers.boxes,
              QStringList({"save to file|please select a file to save",
                           "save to file|open file failed", "save window|open file failed"}));
}
