#include "windowtest.h"

#include <QLineEdit>
#include <QStatusBar>
#include <QTextBlock>

namespace {

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
    void chunk(const QByteArray& data, int ms)
    {
        clock_now = clock_now.addMSecs(ms);
        total += data.size();
        ASSERT_TRUE(receive(data, total));
    }
    void clear()
    {
        click("pushButton_recv_clr");
        total = 0;
    }
    void save_to(const QString& path)
    {
        find<QLineEdit>("lineEdit_save2file_path")->setText(path);
        click_save();
    }
    void click_save()
    {
        auto* const box = find<QCheckBox>("checkBox_save2file");
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }

    QTime clock_now = QTime(12, 0, 0);
    const QString path = sandbox.path("saved");
    int total = 0;
};

} // namespace

TEST_F(Receive, BreaksFramesByTheirSilence)
{
    chunk("unwatched", 1000);
    check("checkBox_frame_mode");
    chunk("first", 1); // the gap is that from the start
    chunk(" same", 5);
    chunk("second", 6);
    chunk(" same", 0);
    EXPECT_EQ(shown(), "unwatched\nfirst same\nsecond same");
    clear();
    chunk("after clear", 1000);
    EXPECT_EQ(shown(), "after clear");
    set("spinBox_frame_interval", 100);
    chunk("+", 100);
    chunk("next", 101);
    EXPECT_EQ(shown(), "after clear+\nnext");
}

TEST_F(Receive, StampsTheChunksAfterASilence)
{
    check("checkBox_display_time");
    chunk("a", 1000);
    chunk("b", 5);
    chunk("c", 5);
    chunk("d", 6);
    EXPECT_EQ(shown(), "[12:00:01.000] abc[12:00:01.016] d");
    check("checkBox_frame_mode");
    chunk("e", 86400000 - 12 * 3600000); // past midnight
    EXPECT_EQ(shown(), "[12:00:01.000] abc[12:00:01.016] d\n[00:00:01.016] e");
}

TEST_F(Receive, ShowsTextUpToAZeroByteAndSavesAll)
{
    save_to(path);
    const QByteArray data("ab\0cd", 5);
    chunk(data, 0);
    check("checkBox_hex_display");
    chunk(QByteArray("A\r\xFF\0", 4), 0);
    EXPECT_EQ(shown(), "ab41 0D FF 00 ");
    click_save();
    EXPECT_EQ(file_content(path), data + "41 0D FF 00 ");
}

TEST_F(Receive, MendsWhatACutHasLeft)
{
    const QString text =
        QString::fromUtf8("one\r\n\xC2\xB5\xE6\xB8\xA9\xF0\x9F\x98\x80\r\n").repeated(3);
    const QByteArray bytes = text.toUtf8();
    for (int size = 1; size <= 7; ++size) {
        for (int at = 0; at < bytes.size(); at += size)
            chunk(bytes.mid(at, size), 0);
        EXPECT_EQ(shown(), QString(text).remove('\r')) << size;
        clear();
    }
    const std::pair<std::function<void()>, QString> rows[] = {
        {[] {}, QString(QChar(0x6E29))},
        {[this] { click("pushButton_send"); }, "??\nsent\n?"},
        {[this] { clear(); }, "?"},
        {[this] { check("checkBox_frame_mode"); }, "??\n?"},
    };
    check("checkBox_display_tx");
    type("sent");
    for (const auto& [between, expected] : rows) {
        clear();
        chunk("\xE6\xB8", 0);
        between();
        chunk("\xA9", 1000);
        EXPECT_EQ(shown().replace(QChar::ReplacementCharacter, '?'), expected);
    }
}

TEST_F(Receive, PutsWhatWasTypedOnABlueLineOfItsOwn)
{
    check("checkBox_frame_mode");
    check("checkBox_display_tx");
    type("sent\\t\u4f60");
    click("pushButton_send");
    chunk("received", 1000);
    const auto* const area = find<QPlainTextEdit>("plainTextEdit_recv");
    // A reader's click on a blue line leaves what follows as it is.
    QTest::mouseClick(area->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    click("pushButton_send");
    chunk("more", 1000);
    EXPECT_EQ(shown(), "sent\\t?\nreceived\nsent\\t?\nmore");
    const QColor blue = Qt::blue;
    for (QTextBlock block = area->document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QBrush brush = it.fragment().charFormat().foreground();
            EXPECT_EQ(brush.style() != Qt::NoBrush && brush.color() == blue,
                      block.text() == "sent\\t?")
                << qPrintable(block.text());
        }
    // The stamp of a sent line leaves the gap of the next chunk alone.
    check("checkBox_display_time");
    clear();
    clock_now = clock_now.addMSecs(1000);
    click("pushButton_send");
    chunk("x", 1);
    EXPECT_EQ(shown(), "[12:00:03.000] sent\\t?\n[12:00:03.001] x");
}

TEST_F(Receive, PausesTheDisplayOnly)
{
    check("checkBox_frame_mode");
    chunk("shown", 1000);
    click("pushButton_dsiplay_pause");
    EXPECT_EQ(label("pushButton_dsiplay_pause"), "&resume");
    chunk("hidden", 3);
    EXPECT_EQ(shown(), "shown");
    save_to(path);
    chunk("saved", 1000);
    click("pushButton_dsiplay_pause");
    EXPECT_EQ(label("pushButton_dsiplay_pause"), "&pause");
    chunk("resumed", 2);
    EXPECT_EQ(shown(), "shownresumed");
    click_save();
    EXPECT_EQ(file_content(path), "\nsavedresumed");
}

TEST_F(Receive, KeepsEveryByteOfALargeFile)
{
    const QByteArray data = mixed_bytes(50 * 1000 * 1000);
    check("checkBox_window_auto_clr");
    save_to(path);
    for (int at = 0; at < data.size(); at += 1000 * 1000) {
        if (at == data.size() / 2)
            click("pushButton_dsiplay_pause");
        ASSERT_TRUE(pty.write(data.mid(at, 1000 * 1000)));
    }
    ASSERT_TRUE(receive("", data.size()));
    click("pushButton_open"); // the file goes on existing
    click_save();
    EXPECT_TRUE(file_content(path) == data);
}

TEST_F(Receive, ClearsOldLinesByItself)
{
    set("spinBox_auto_clr_threshold", 6); // nothing goes before the box is checked
    chunk("1\n2\n3\n4\n5\n6\n7\n8", 0);
    EXPECT_EQ(shown(), "1\n2\n3\n4\n5\n6\n7\n8");
    check("checkBox_window_auto_clr");
    set("spinBox_auto_clr_threshold", 5);
    EXPECT_EQ(shown(), "4\n5\n6\n7\n8");
    chunk("\n9", 0);
    EXPECT_EQ(shown(), "5\n6\n7\n8\n9");
    check("checkBox_window_auto_clr", false);
    chunk("\n10\n11", 0);
    EXPECT_EQ(shown(), "5\n6\n7\n8\n9\n10\n11");
}

TEST_F(Receive, EchoesInLoopMode)
{
    check("checkBox_display_tx");
    type("not typed");
    check("checkBox_auto_send"); // which loop mode ends
    check("checkBox_loop");
    EXPECT_FALSE(checked("checkBox_auto_send"));
    chunk("ping", 0);
    chunk("pong!", 0);
    EXPECT_EQ(pty.read(9), "pingpong!");
    EXPECT_EQ(counters(), "CNT: 2 TX: 9 RX: 9");
    EXPECT_EQ(shown(), "pingpong!");
}

TEST_F(Receive, GivesUpAnEchoThatNobodyReads)
{
    check("checkBox_loop");
    const QByteArray block = mixed_bytes(16384);
    for (int sent = 0; !closed() && sent < 16 * 1024 * 1024; sent += block.size())
        ASSERT_TRUE(wait_until([&, done = 0]() mutable {
            const ssize_t n =
                ::write(pty.master_fd(), block.constData() + done, size_t(block.size() - done));
            done += n > 0 ? int(n) : 0;
            return done == block.size() || closed();
        }));
    EXPECT_TRUE(wait_until([this] { return closed(); }));
    ASSERT_EQ(answers.boxes.size(), 1);
    EXPECT_TRUE(answers.boxes[0].startsWith("note|port write error: "))
        << qPrintable(answers.boxes[0]);
}

TEST_F(Receive, RefusesFilesThatCannotBeWritten)
{
    save_to("");
    EXPECT_FALSE(checked("checkBox_save2file"));
    save_to(sandbox.path("no/such/folder"));
    EXPECT_FALSE(checked("checkBox_save2file"));
    answers.file = sandbox.path("no/such/folder");
    click("pushButton_window_save");
    EXPECT_EQ(answers.boxes,
              QStringList({"save to file|please select a file to save",
                           "save to file|open file failed", "save window|open file failed"}));
}

TEST_F(Receive, SaysOnceWhichFileTakesNoMore)
{
    auto* const bar = find<QStatusBar>("statusBar");
    const QString note = "file can't be written: No space left on device: /dev/full";
    const auto taken = [bar] {
        const QString message = bar->currentMessage();
        bar->clearMessage();
        return message;
    };
    save_to("/dev/full");
    chunk("held back", 0);
    EXPECT_EQ(taken(), "");
    for (const QString& expected : {note, QString()}) {
        for (int i = 0; i < 8; ++i) // a flush of the file's buffer
            chunk(mixed_bytes(3000), 0);
        EXPECT_EQ(taken(), expected);
    }
    EXPECT_TRUE(checked("checkBox_save2file"));
    click_save();
    EXPECT_EQ(taken(), "");
    click_save(); // once for each time it is opened
    chunk("held back", 0);
    click_save();
    EXPECT_EQ(taken(), note);
    answers.file = "/dev/full";
    clear();
    for (const int size : {100, 40000}) { // fails on closing, and at once
        chunk(QByteArray(size, 'x'), 0);
        click("pushButton_window_save");
        EXPECT_EQ(taken(), note) << size;
    }
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Receive, SavesTheWindowAndAppendsToFiles)
{
    file_write(path, "old ");
    answers.file = path;
    click("pushButton_save2file_browse");
    click_save();
    chunk("caf\xC3\xA9 \xE4\xBD\xA0", 0);
    click_save();
    EXPECT_EQ(file_content(path), "old caf\xC3\xA9 \xE4\xBD\xA0");
    click("pushButton_window_save");
    EXPECT_EQ(file_content(path), "caf\xE9 ?");
}

TEST_F(Receive, ClearsAreaAndCountersButNotTheCount)
{
    type("abc");
    click("pushButton_send");
    chunk("xyz", 0);
    EXPECT_EQ(counters(), "CNT: 1 TX: 3 RX: 3");
    click("pushButton_dsiplay_pause");
    clear();
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(counters(), "CNT: 1 TX: 0 RX: 0");
    EXPECT_EQ(label("pushButton_dsiplay_pause"), "&resume");
}
