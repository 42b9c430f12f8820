#include "windowtest.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QStatusBar>
#include <sys/stat.h>

namespace {

class Send : public WindowTest
{
protected:
    Send()
    {
        window_start();
        EXPECT_TRUE(port_open());
    }
    QByteArray file_choose(int size)
    {
        const QByteArray data = mixed_bytes(size);
        answers.file = sandbox.path("file");
        file_write(answers.file, data);
        return data;
    }
    bool progress_shown() const { return window->findChild<QProgressBar*>()->isVisible(); }
};

} // namespace

TEST_F(Send, SendsWhatTheTextMeansOrSaysWhereItIsWrong)
{
    const std::tuple<bool, const char*, QByteArray, const char*> rows[] = {
        {false, R"(a\0b\r\n)", QByteArray("a\0b\r\n", 5), ""},
        {false, "two\nlines \xE4\xBD\xA0", "two\nlines \xE4\xBD\xA0", ""},
        {false, "\xE4\xBD\xA0\\q", "", "note|format error at 4: q"},
        {false, "abc\\", "", "note|format error at 4: \\"},
        {true, "41 4243 7 ", "ABC\x07", ""},
        {true, "0x41", "", "note|char 'x' at offset 1 is not a hex number"},
        {true, "4%", "", "note|char '%' at offset 1 is not a hex number"},
        {true, "7", "", ""}, // half a byte: nothing to send, nothing to say
    };
    int bytes = 0, count = 0;
    for (const auto& [hex, text, wire, box] : rows) {
        SCOPED_TRACE(text);
        check("checkBox_hex_mode", hex);
        type(QString::fromUtf8(text));
        click("pushButton_send");
        EXPECT_EQ(pty.read(wire.size()), wire);
        EXPECT_EQ(answers.boxes.join(' '), box);
        bytes += wire.size();
        count += wire.isEmpty() ? 0 : 1;
        EXPECT_EQ(counters(), QString("CNT: %1 TX: %2 RX: 0").arg(count).arg(bytes));
        type("");
        answers.boxes.clear();
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Send, ParsesOnlyWhenTheTextChanges)
{
    type("a\\tb");
    check("checkBox_raw_text");
    click("pushButton_send");
    EXPECT_EQ(pty.read(3), "a\tb");
    type("a\\tb ");
    click("pushButton_send");
    EXPECT_EQ(pty.read(5), "a\\tb ");
}

TEST_F(Send, RepeatsUpToItsLimit)
{
    type("x");
    set("spinBox_send_interval", 1);
    for (const auto& [limit, writes] : {std::pair(3, 3), std::pair(-1, 1)}) {
        set("spinBox_send_count", limit);
        check("checkBox_auto_send");
        EXPECT_TRUE(wait_until([this] { return !checked("checkBox_auto_send"); }));
        EXPECT_EQ(pty.read(writes), QByteArray(writes, 'x'));
        EXPECT_TRUE(counters().startsWith(QString("CNT: %1 ").arg(writes)));
    }
    EXPECT_EQ(pty.read_now(), "");
}

TEST_F(Send, OpensTheMenuByF10)
{
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window->windowHandle(), Qt::Key_F10);
    auto* const menu = find<QMenu>("menu_file");
    EXPECT_TRUE(wait_until([&] { return menu->isVisible(); }));
    menu->close();
}

TEST_F(Send, NeedsAPortForTheTimer)
{
    click("pushButton_open");
    for (const char* const box : {"checkBox_auto_send", "checkBox_send_in_turn"}) {
        check(box); // a box that a closing session has left enabled
        EXPECT_FALSE(checked(box));
    }
    const QString note = "note|please open a port first";
    EXPECT_EQ(answers.boxes, QStringList({note, note}));
}

TEST_F(Send, KeepsTicksQuietUnderABox)
{
    type("good");
    set("spinBox_send_interval", 1);
    check("checkBox_auto_send");
    ASSERT_EQ(pty.read(4), "good");
    QByteArray under_the_box;
    answers.under_box = [&] {
        pty.read_now();
        QTest::qWait(50);
        under_the_box = pty.read_now();
    };
    type("half\\q");
    EXPECT_EQ(answers.boxes.size(), 1);
    EXPECT_EQ(under_the_box, "");
    QTest::qWait(20);
    EXPECT_EQ(pty.read_now(), "");
    EXPECT_TRUE(checked("checkBox_auto_send"));
    type("well");
    EXPECT_EQ(pty.read(4), "well");
}

TEST_F(Send, GoesOnUnderOtherBoxes)
{
    type("a");
    check("checkBox_auto_send");
    answers.under_box = [this] {
        pty.read_now();
        EXPECT_EQ(pty.read(3), "aaa");
    };
    find<QAction>("action_about")->trigger();
    EXPECT_EQ(answers.boxes, QStringList("Tarnwick|Corvane Serial Tool\nV1.14 build Jan 11 2018"));
}

TEST_F(Send, LeavesFileModeWithThePort)
{
    file_choose(10);
    answers.under_dialog = [this] { click("pushButton_open"); };
    check("checkBox_send_file");
    EXPECT_FALSE(checked("checkBox_send_file"));
    EXPECT_EQ(typed(), "");

    find<QWidget>("checkBox_send_file")->setEnabled(true); // as the end of another mode leaves it
    check("checkBox_send_file");
    QMetaObject::invokeMethod(window.get(), "on_pushButton_send_clicked");
    EXPECT_EQ(answers.boxes, QStringList("note|port not opened"));
}

TEST_F(Send, SendsAFileToASlowReader)
{
    const QByteArray data = file_choose(2000000);
    check("checkBox_display_tx");
    check("checkBox_hex_mode"); // in which nobody reads the path as bytes
    check("checkBox_send_file");
    click("pushButton_send");
    QByteArray received = pty.read(300000);
    const auto* const progress = window->findChild<QProgressBar*>();
    ASSERT_TRUE(progress && progress->isVisible());
    for (const int width : {1600, 300}) { // what doesn't fit gives way to the percentage
        window->resize(width, 400);
        EXPECT_TRUE(wait_until([&] { return progress->text().contains("/s") == (width == 1600); }));
        EXPECT_LT(progress->fontMetrics().horizontalAdvance(progress->text()), progress->width());
    }
    EXPECT_TRUE(wait_until([&] {
        received += pty.read_now(4096);
        return progress->value() > 100;
    }));
    received += pty.read(data.size() - received.size());
    EXPECT_TRUE(received == data) << received.size();
    EXPECT_TRUE(wait_until([this] { return !progress_shown(); }));
    const auto* const bar = find<QStatusBar>("statusBar");
    EXPECT_TRUE(wait_until([&] { return bar->currentMessage().startsWith("file sent: "); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(bar->findChild<QLabel*>()->isVisible()) << "the address next to the message";
    EXPECT_TRUE(counters().contains(" TX: 2000000 "));
    EXPECT_EQ(shown(), answers.file + "\n");
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Send, StopsAFileAtOnce)
{
    const QByteArray data = file_choose(1000000);
    check("checkBox_send_file");
    click("pushButton_send");
    QByteArray received = pty.read(100000);
    check("checkBox_send_file", false);
    EXPECT_FALSE(progress_shown());
    click("pushButton_open"); // lets out what was accepted, and no more
    received += pty.read_now();
    EXPECT_LT(received.size(), 200000);
    EXPECT_TRUE(data.startsWith(received));
}

TEST_F(Send, SaysWhichFileCannotBeSent)
{
    check("checkBox_send_file"); // the dialog is cancelled
    click("pushButton_send");
    EXPECT_EQ(answers.boxes.takeFirst(), "note|please select a file to send");
    check("checkBox_send_file", false);
    file_choose(10);
    check("checkBox_send_file");
    QFile::remove(answers.file);
    click("pushButton_send");
    const QString unreadable = "note|file " + answers.file + " can't be read: ";
    EXPECT_TRUE(answers.boxes.takeFirst().startsWith(unreadable));
    ASSERT_EQ(::mkfifo(answers.file.toLocal8Bit(), 0600), 0);
    click("pushButton_send"); // which doesn't wait for somebody to write into it
    EXPECT_EQ(answers.boxes, QStringList(unreadable + "not a file"));
    EXPECT_TRUE(checked("checkBox_send_file"));
}
