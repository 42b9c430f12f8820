#include "windowtest.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>

namespace {

class Send : public WindowTest
{
protected:
    void start(bool raw_text = true)
    {
        configure("serial_tool/raw_text", raw_text);
        window_start();
        ASSERT_TRUE(port_open());
    }
    bool checked(const char* name) const { return find<QCheckBox>(name)->isChecked(); }
    QString file_of(int size)
    {
        QFile file(sandbox.path("file"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(mixed_bytes(size));
        return file.fileName();
    }
};

} // namespace

TEST_F(Send, SendsWhatTheTextStandsFor)
{
    start(false);
    struct Row
    {
        bool hex;
        const char* text;
        QByteArray wire;
    };
    const Row rows[] = {
        {false, R"(a\0b\r\n)", QByteArray("a\0b\r\n", 5)},
        {false, "two\nlines \xE4\xBD\xA0", "two\nlines \xE4\xBD\xA0"},
        {true, "41 4243 7 ", "ABC\x07"},
    };
    int tx = 0, count = 0;
    for (const Row& row : rows) {
        check("checkBox_hex_mode", row.hex);
        EXPECT_EQ(enabled("checkBox_raw_text"), !row.hex);
        type(QString::fromUtf8(row.text));
        click("pushButton_send");
        EXPECT_EQ(pty.read(row.wire.size()), row.wire);
        tx += row.wire.size();
        EXPECT_TRUE(status_shows(QString("TX: %1").arg(tx)));
        EXPECT_TRUE(status_shows(QString("CNT: %1").arg(++count)));
    }
    type("7"); // half a byte: nothing to send, nothing to say
    click("pushButton_send");
    EXPECT_TRUE(status_shows(QString("CNT: %1").arg(count)));
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Send, SaysWhereTheTextIsWrongAndSendsNothing)
{
    start(false);
    struct Row
    {
        bool hex;
        const char* text;
        const char* message;
    };
    const Row rows[] = {
        {false, "\xE4\xBD\xA0\\q", "note|format error at 4: q"},
        {false, "abc\\", "note|format error at 4: \\"},
        {true, "0x41", "note|char 'x' at offset 1 is not a hex number"},
        {true, "41 G", "note|char 'G' at offset 3 is not a hex number"},
        {true, "4%", "note|char '%' at offset 1 is not a hex number"},
    };
    for (const Row& row : rows) {
        check("checkBox_hex_mode", row.hex);
        answers.boxes.clear();
        type(QString::fromUtf8(row.text));
        click("pushButton_send");
        EXPECT_EQ(answers.boxes, QStringList(row.message));
        type("");
    }
    EXPECT_TRUE(status_shows("CNT: 0"));
    EXPECT_TRUE(pty.read_now().isEmpty());
}

TEST_F(Send, ParsesOnlyWhenTheTextChanges)
{
    start(false);
    type("a\\tb");
    check("checkBox_raw_text");
    click("pushButton_send");
    EXPECT_EQ(pty.read(3), "a\tb");
    type("a\\tb ");
    click("pushButton_send");
    EXPECT_EQ(pty.read(5), "a\\tb ");
}

TEST_F(Send, KeepsATextForEachMode)
{
    configure("serial_tool/ascii", "stored, with comma");
    configure("serial_tool/hex", "01 02");
    start();
    type("never stored");
    check("checkBox_hex_mode");
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "01 02");
    check("checkBox_hex_mode", false);
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "stored, with comma");
}

TEST_F(Send, RepeatsUpToItsLimit)
{
    struct Row
    {
        int limit;
        int writes;
    };
    start();
    type("x");
    find<QSpinBox>("spinBox_send_interval")->setValue(1);
    for (const Row& row : {Row{3, 3}, Row{-1, 1}}) {
        find<QSpinBox>("spinBox_send_count")->setValue(row.limit);
        check("checkBox_auto_send");
        EXPECT_FALSE(enabled("checkBox_send_file"));
        EXPECT_FALSE(enabled("checkBox_send_in_turn"));
        EXPECT_TRUE(wait_until([&] { return !checked("checkBox_auto_send"); }));
        EXPECT_EQ(pty.read(row.writes), QByteArray(row.writes, 'x'));
        EXPECT_TRUE(status_shows(QString("CNT: %1").arg(row.writes)));
        EXPECT_TRUE(enabled("checkBox_send_file"));
    }
    EXPECT_TRUE(pty.read_now().isEmpty());
}

TEST_F(Send, NeedsAPortForTheTimer)
{
    window_start();
    check("checkBox_auto_send"); // a box that a closing session has left enabled
    EXPECT_FALSE(checked("checkBox_auto_send"));
    check("checkBox_send_in_turn");
    EXPECT_FALSE(checked("checkBox_send_in_turn"));
    EXPECT_EQ(answers.boxes,
              QStringList({"note|please open a port first", "note|please open a port first"}));
}

TEST_F(Send, KeepsTicksQuietUnderABox)
{
    start(false);
    type("good");
    find<QSpinBox>("spinBox_send_interval")->setValue(1);
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
    start();
    type("a");
    check("checkBox_auto_send");
    answers.under_box = [this] {
        pty.read_now();
        EXPECT_EQ(pty.read(3), "aaa");
    };
    find<QAction>("action_about")->trigger();
    EXPECT_FALSE(answers.under_box);
}

TEST_F(Send, LeavesFileModeWithThePort)
{
    start();
    answers.file = file_of(10);
    answers.under_dialog = [this] { click("pushButton_open"); };
    check("checkBox_send_file");
    EXPECT_FALSE(checked("checkBox_send_file"));
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "");

    find<QWidget>("checkBox_send_file")
        ->setEnabled(true); // as the ends of other modes may leave it
    check("checkBox_send_file");
    QMetaObject::invokeMethod(window.get(), "on_pushButton_send_clicked");
    EXPECT_EQ(answers.boxes, QStringList("note|port not opened"));
}

TEST_F(Send, SendsAFileToASlowReader)
{
    const QByteArray data = mixed_bytes(2000000);
    answers.file = file_of(data.size());
    start();
    type("before");
    check("checkBox_display_tx");
    check("checkBox_send_file");
    EXPECT_EQ(answers.file_caption, "Chose file to send");
    for (const char* const name :
         {"checkBox_auto_send", "checkBox_hex_mode", "checkBox_send_in_turn", "pushButton_crc_hash",
          "plainTextEdit_send", "tableWidget_strings"})
        EXPECT_FALSE(enabled(name)) << name;
    click("pushButton_send");
    QByteArray received = pty.read(300000);
    const auto bars = window->findChildren<QProgressBar*>();
    ASSERT_EQ(bars.size(), 1);
    EXPECT_TRUE(wait_until([&] {
        received += pty.read_now(4096);
        return bars[0]->value() > 100;
    }));
    EXPECT_TRUE(bars[0]->isVisible());
    received += pty.read(data.size() - received.size());
    EXPECT_EQ(received.size(), data.size());
    EXPECT_TRUE(received == data);
    EXPECT_TRUE(wait_until([&] { return !bars[0]->isVisible(); }));
    const auto* const bar = find<QStatusBar>("statusBar");
    EXPECT_TRUE(wait_until([&] { return bar->currentMessage().startsWith("file sent: "); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(bar->findChild<QLabel*>()->isVisible()) << "the address behind the message";
    EXPECT_TRUE(status_shows(QString("TX: %1").arg(data.size())));
    EXPECT_EQ(shown(), answers.file + "\n");

    check("checkBox_send_file", false);
    for (const char* const name : {"checkBox_auto_send", "checkBox_hex_mode", "plainTextEdit_send"})
        EXPECT_TRUE(enabled(name)) << name;
}

TEST_F(Send, StopsAFileAtOnce)
{
    const QByteArray data = mixed_bytes(1000000);
    answers.file = file_of(data.size());
    start();
    check("checkBox_send_file");
    click("pushButton_send");
    QByteArray received = pty.read(100000);
    check("checkBox_send_file", false);
    EXPECT_FALSE(window->findChild<QProgressBar*>()->isVisible());
    click("pushButton_open"); // lets out what was accepted, and no more
    received += pty.read_now();
    EXPECT_LT(received.size(), 200000);
    EXPECT_TRUE(data.startsWith(received));
}

TEST_F(Send, SaysWhichFileCannotBeSent)
{
    start();
    check("checkBox_send_file"); // the dialog is cancelled
    EXPECT_EQ(find<QPlainTextEdit>("plainTextEdit_send")->toPlainText(), "");
    click("pushButton_send");
    check("checkBox_send_file", false);
    answers.file = file_of(10);
    check("checkBox_send_file");
    QFile::remove(answers.file);
    click("pushButton_send");
    ASSERT_EQ(answers.boxes.size(), 2);
    EXPECT_EQ(answers.boxes[0], "note|please select a file to send");
    EXPECT_TRUE(answers.boxes[1].contains(answers.file)) << qPrintable(answers.boxes[1]);
    EXPECT_TRUE(checked("checkBox_send_file"));
}
