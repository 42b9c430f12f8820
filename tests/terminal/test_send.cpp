#include "windowtest.h"

#include <QDialog>
#include <QProgressBar>
#include <sys/stat.h>

using Send = OpenWindowTest;

TEST_F(Send, SendsWhatTheTextMeansOrSaysWhereItIsWrong)
{
    const std::tuple<bool, const char*, QByteArray, const char*> rows[] = {
        {false, "two\nlines \xE4\xBD\xA0\\0", QByteArray("two\nlines \xE4\xBD\xA0\0", 14), ""},
        {false, "\xE4\xBD\xA0\\q", "", "note|format error at 4: q"},
        {false, "abc\\", "", "note|format error at 4: \\"},
        {true, "41 4243 7 ", "ABC\x07", ""},
        {true, "4%", "", "note|char '%' at offset 1 is not a hex number"},
        {true, "7", "", ""}, // half a byte: nothing to send, nothing to say
    };
    for (const auto& [hex, text, wire, box] : rows) {
        check(HEX_MODE, hex);
        send(QString::fromUtf8(text));
        EXPECT_EQ(pty.read(wire.size()), wire);
        EXPECT_EQ(boxes_taken().join(' '), box);
        type("");
    }
    EXPECT_EQ(pty.read_now(), "");
    EXPECT_EQ(counters(), "CNT: 2 TX: 18 RX: 0");
}

TEST_F(Send, InsertsACheckValue)
{
    type("12");
    answers.under_dialog = [] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        for (const char* const button : {"radioButton_xor8", "checkBox"})
            dialog->findChild<QAbstractButton*>(button)->click();
        dialog->accept();
    };
    click("pushButton_crc_hash");
    EXPECT_EQ(typed(), " 03 (Bit wise NOT: fc)12");
}

TEST_F(Send, RepeatsUpToItsLimit)
{
    type("x");
    for (const auto& [limit, writes] : {std::pair(3, 3), std::pair(-1, 1)}) {
        set("spinBox_send_count", limit);
        check(AUTO_SEND);
        EXPECT_TRUE(wait_until([this] { return !checked(AUTO_SEND); }));
        EXPECT_EQ(pty.read(writes), QByteArray(writes, 'x'));
        EXPECT_TRUE(counters().startsWith(QString("CNT: %1 ").arg(writes)));
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Send, KeepsTicksQuietUnderANoteOnly)
{
    type("good");
    set("spinBox_send_interval", 1);
    check(AUTO_SEND);
    const auto sent_in_a_while = [this] {
        pty.read_now();
        QTest::qWait(50);
        return pty.read_now();
    };
    answers.under_box = [&] { EXPECT_EQ(sent_in_a_while(), ""); };
    type("half\\q");
    EXPECT_EQ(sent_in_a_while(), "");
    EXPECT_EQ(answers.boxes.size(), 1);
    EXPECT_TRUE(checked(AUTO_SEND));
    type("well");
    answers.under_box = [this] { EXPECT_EQ(pty.read(4), "well"); };
    command("action_about");
    EXPECT_EQ(answers.boxes.last(), "Tarnwick|Corvane Serial Tool\nV1.14 build Jan 11 2018");
}

TEST_F(Send, SendsAFileToASlowReaderAndNoEchoIntoIt)
{
    const QByteArray data = file_choose(2000000);
    check(HEX_MODE); // in which nobody reads the path as bytes
    check(LOOP);
    check(SEND_FILE);
    click(SEND);
    QByteArray got = pty.read(300000);
    ASSERT_TRUE(receive("not echoed", 10));
    const auto* const progress = window->findChild<QProgressBar*>();
    for (const int width : {1600, 300}) { // what doesn't fit gives way to the percentage
        window->resize(width, 400);
        EXPECT_TRUE(wait_until([&] { return progress->text().contains("/s") == (width == 1600); }));
        EXPECT_LT(progress->fontMetrics().horizontalAdvance(progress->text()), progress->width());
    }
    EXPECT_TRUE(wait_until([&] {
        got += pty.read_now(4096);
        return progress->value() > 100;
    }));
    EXPECT_TRUE(progress->isVisible());
    got += pty.read(data.size() - got.size());
    EXPECT_TRUE(got == data) << got.size();
    const auto* const bar = find<QStatusBar>("statusBar");
    EXPECT_TRUE(wait_until([&] { return bar->currentMessage().startsWith("file sent: "); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(bar->findChild<QLabel*>()->isVisible()) << "the address next to the message";
    EXPECT_FALSE(progress->isVisible());
    EXPECT_TRUE(counters().endsWith(" TX: 2000000 RX: 10"));
    check(SEND_FILE, false);
    ASSERT_TRUE(receive("echoed", 16));
    EXPECT_EQ(pty.read(6), "echoed");
}

TEST_F(Send, StopsAFileAtOnceAndWithThePort)
{
    const QByteArray data = file_choose(1000000);
    check(SHOW_SENT);
    check(SEND_FILE);
    click(SEND);
    QByteArray got = pty.read(100000);
    check(SEND_FILE, false);
    EXPECT_FALSE(window->findChild<QProgressBar*>()->isVisible());
    EXPECT_EQ(shown(), answers.file + "\n");
    answers.under_dialog = [this] { click(OPEN); };
    check(SEND_FILE);
    EXPECT_FALSE(checked(SEND_FILE));
    EXPECT_EQ(typed(), "");
    got += pty.read_now(); // the close has let out what was accepted, and no more
    EXPECT_LT(got.size(), 200000);
    EXPECT_TRUE(data.startsWith(got));
}

TEST_F(Send, SaysWhichFileCannotBeSent)
{
    check(SEND_FILE); // the dialog is cancelled
    click(SEND);
    check(SEND_FILE, false);
    file_choose(10);
    check(SEND_FILE);
    QFile::remove(answers.file);
    click(SEND);
    ASSERT_EQ(::mkfifo(answers.file.toLocal8Bit(), 0600), 0);
    click(SEND); // which doesn't wait for somebody to write into it
    const QString unreadable = "note|file " + answers.file + " can't be read: ";
    EXPECT_EQ(answers.boxes,
              QStringList({"note|please select a file to send",
                           unreadable + "No such file or directory", unreadable + "not a file"}));
    EXPECT_TRUE(checked(SEND_FILE));
}
