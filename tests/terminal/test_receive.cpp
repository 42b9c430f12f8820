#include "wallclock.h"
#include "windowtest.h"

#include <QFile>
#include <QLineEdit>
#include <QTextBlock>

namespace {

QTime clock_now(12, 0, 0);

// A window whose clock stands still until the test moves it.
class Receive : public WindowTest
{
protected:
    Receive()
    {
        clock_now = QTime(12, 0, 0);
        wall_time_source_set([] { return clock_now; });
        window_start();
        EXPECT_TRUE(port_open());
    }
    ~Receive() override { wall_time_source_set(nullptr); }

    void after(int ms) { clock_now = clock_now.addMSecs(ms); }
    // A chunk that comes `ms` after the last one.
    void chunk(const QByteArray& data, int ms)
    {
        after(ms);
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
        click_box("checkBox_save2file");
    }
    void click_box(const char* name)
    {
        auto* const box = find<QCheckBox>(name);
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }
    QByteArray content(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    int total = 0;
};

} // namespace

TEST_F(Receive, BreaksFramesByTheirSilence)
{
    check("checkBox_frame_mode");
    chunk("first", 1000);
    chunk(" same", 5);
    chunk("second", 6);
    chunk(" same", 0);
    EXPECT_EQ(shown(), "first same\nsecond same");
    clear();
    chunk("after clear", 1000);
    EXPECT_EQ(shown(), "after clear");
    find<QSpinBox>("spinBox_frame_interval")->setValue(100);
    chunk("+", 100);
    chunk("next", 101);
    EXPECT_EQ(shown(), "after clear+\nnext");
}

TEST_F(Receive, StampsTheChunksBehindASilence)
{
    check("checkBox_display_time");
    chunk("a", 1000);
    chunk("b", 5);
    chunk("c", 6);
    EXPECT_EQ(shown(), "[12:00:01.000] ab[12:00:01.011] c");
    check("checkBox_frame_mode");
    chunk("d", 86400000 - 12 * 3600000); // past midnight
    EXPECT_EQ(shown(), "[12:00:01.000] ab[12:00:01.011] c\n[00:00:01.011] d");
}

TEST_F(Receive, MeasuresTheFirstGapFromTheLastChunkItWatched)
{
    chunk("unwatched", 1000);
    check("checkBox_frame_mode");
    chunk("watched", 1);
    EXPECT_EQ(shown(), "unwatched\nwatched");
}

TEST_F(Receive, ShowsTextUpToAZeroByteAndSavesAll)
{
    const QString path = sandbox.path("saved");
    save_to(path);
    const QByteArray data("ab\0cd", 5);
    chunk(data, 0);
    check("checkBox_hex_display");
    chunk(QByteArray("A\r\xFF\0", 4), 0);
    EXPECT_EQ(shown(), "ab41 0D FF 00 ");
    click_box("checkBox_save2file");
    EXPECT_EQ(content(path), data + "41 0D FF 00 ");
}

TEST_F(Receive, PutsSentTextOnABlueLineOfItsOwn)
{
    check("checkBox_frame_mode");
    check("checkBox_display_tx");
    type("sent");
    click("pushButton_send");
    chunk("received", 1000);
    const auto* const area = find<QPlainTextEdit>("plainTextEdit_recv");
    // A reader's click on a blue line leaves what follows as it is.
    QTest::mouseClick(area->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    click("pushButton_send");
    chunk("more", 1000);
    EXPECT_EQ(shown(), "sent\nreceived\nsent\nmore");
    const QColor blue = Qt::blue;
    for (QTextBlock block = area->document()->begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QBrush brush = it.fragment().charFormat().foreground();
            EXPECT_EQ(brush.style() != Qt::NoBrush && brush.color() == blue, block.text() == "sent")
                << qPrintable(block.text());
        }
    // The stamp of a sent line leaves the gap of the next chunk alone.
    check("checkBox_display_time");
    clear();
    after(1000);
    click("pushButton_send");
    chunk("x", 1);
    EXPECT_EQ(shown(), "[12:00:03.000] sent\n[12:00:03.001] x");
}

TEST_F(Receive, ShowsWhatWasTypedNotWhatIsSent)
{
    check("checkBox_display_tx");
    type("A\\r\u4f60");
    click("pushButton_send");
    check("checkBox_hex_mode");
    type("41 42");
    click("pushButton_send");
    EXPECT_EQ(shown(), "A\\r?\n41 42\n");
}

TEST_F(Receive, PausesTheDisplayOnly)
{
    check("checkBox_frame_mode");
    chunk("shown", 1000);
    click("pushButton_dsiplay_pause");
    EXPECT_EQ(find<QPushButton>("pushButton_dsiplay_pause")->text(), "&resume");
    chunk("hidden", 3);
    EXPECT_EQ(shown(), "shown");
    const QString path = sandbox.path("saved");
    save_to(path);
    chunk("saved", 1000);
    click("pushButton_dsiplay_pause");
    EXPECT_EQ(find<QPushButton>("pushButton_dsiplay_pause")->text(), "&pause");
    chunk("resumed", 2);
    EXPECT_EQ(shown(), "shownresumed");
    click_box("checkBox_save2file");
    EXPECT_EQ(content(path), "\nsavedresumed");
}

TEST_F(Receive, KeepsEveryByteOfALargeFile)
{
    const QByteArray data = mixed_bytes(50 * 1000 * 1000);
    const QString path = sandbox.path("saved");
    check("checkBox_window_auto_clr");
    save_to(path);
    ASSERT_TRUE(pty.write(data.left(data.size() / 2)));
    click("pushButton_dsiplay_pause");
    ASSERT_TRUE(pty.write(data.mid(data.size() / 2)));
    EXPECT_TRUE(wait_until([&] { return status_shows(QString("RX: %1").arg(data.size())); }));
    click("pushButton_open"); // the file goes on existing
    click_box("checkBox_save2file");
    EXPECT_TRUE(content(path) == data);
}

TEST_F(Receive, ClearsOldLinesByItself)
{
    const auto blocks = [&] { return find<QPlainTextEdit>("plainTextEdit_recv")->blockCount(); };
    chunk("1\n2\n3\n4\n5\n6\n7\n8", 0);
    check("checkBox_window_auto_clr");
    auto* const threshold = find<QSpinBox>("spinBox_auto_clr_threshold");
    threshold->setValue(5);
    EXPECT_EQ(shown(), "4\n5\n6\n7\n8");
    chunk("\n9", 0);
    EXPECT_EQ(shown(), "5\n6\n7\n8\n9");
    check("checkBox_window_auto_clr", false);
    chunk("\n10\n11", 0);
    EXPECT_EQ(blocks(), 7);
}

TEST_F(Receive, EchoesInLoopMode)
{
    check("checkBox_display_tx");
    type("not typed");
    check("checkBox_loop");
    EXPECT_FALSE(enabled("checkBox_auto_send"));
    EXPECT_FALSE(enabled("checkBox_send_in_turn"));
    chunk("ping", 0);
    EXPECT_EQ(pty.read(4), "ping");
    EXPECT_TRUE(status_shows("TX: 4"));
    EXPECT_TRUE(status_shows("CNT: 1"));
    EXPECT_EQ(shown(), "ping");
    check("checkBox_loop", false);
    EXPECT_TRUE(enabled("checkBox_auto_send"));
}

TEST_F(Receive, GivesUpAnEchoThatNobodyReads)
{
    check("checkBox_loop");
    const QByteArray block = mixed_bytes(16384);
    const auto closed = [&] { return find<QPushButton>("pushButton_open")->text() == "&open"; };
    for (int sent = 0; !closed() && sent < 16 * 1024 * 1024; sent += block.size())
        ASSERT_TRUE(wait_until([&, done = 0]() mutable {
            const ssize_t n =
                ::write(pty.master_fd(), block.constData() + done, size_t(block.size() - done));
            done += n > 0 ? int(n) : 0;
            return done == block.size() || closed();
        }));
    EXPECT_TRUE(wait_until(closed));
    ASSERT_EQ(answers.boxes.size(), 1);
    EXPECT_TRUE(answers.boxes[0].startsWith("note|port write error: "))
        << qPrintable(answers.boxes[0]);
}

TEST_F(Receive, RefusesFilesThatCannotBeWritten)
{
    save_to("");
    EXPECT_FALSE(find<QCheckBox>("checkBox_save2file")->isChecked());
    save_to(sandbox.path("no/such/folder"));
    EXPECT_FALSE(find<QCheckBox>("checkBox_save2file")->isChecked());
    answers.file = sandbox.path("no/such/folder");
    click("pushButton_window_save");
    EXPECT_EQ(answers.boxes,
              QStringList({"save to file|please select a file to save",
                           "save to file|open file failed", "save window|open file failed"}));
}

TEST_F(Receive, SavesTheWindowAndAppendsToFiles)
{
    QFile file(sandbox.path("saved"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("old ");
    file.close();
    answers.file = file.fileName();
    click("pushButton_save2file_browse");
    EXPECT_EQ(find<QLineEdit>("lineEdit_save2file_path")->text(), file.fileName());
    click_box("checkBox_save2file");
    chunk("caf\xC3\xA9 \xE4\xBD\xA0", 0);
    click_box("checkBox_save2file");
    EXPECT_EQ(content(file.fileName()), "old caf\xC3\xA9 \xE4\xBD\xA0");
    click("pushButton_window_save");
    EXPECT_EQ(content(file.fileName()), "caf\xE9 ?");
}

TEST_F(Receive, ClearsAreaAndCountersButNotTheCount)
{
    type("abc");
    click("pushButton_send");
    chunk("xyz", 0);
    click("pushButton_dsiplay_pause");
    clear();
    EXPECT_EQ(shown(), "");
    for (const char* const text : {"RX: 0", "TX: 0", "CNT: 1"})
        EXPECT_TRUE(status_shows(text)) << text;
    EXPECT_EQ(find<QPushButton>("pushButton_dsiplay_pause")->text(), "&resume");
}
