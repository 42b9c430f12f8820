#include "windowtest.h"

#include <atomic>
#include <ctime>
#include <thread>

namespace {

double cpu_seconds()
{
    timespec t = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

const char* const AUTO_SEND = "checkBox_auto_send";
const char* const IN_TURN = "checkBox_send_in_turn";
const char* const SEND_FILE = "checkBox_send_file";
const char* const LOOP = "checkBox_loop";

class Session : public WindowTest
{
protected:
    Session() { window_start(); }

    QStringList disabled() const
    {
        QStringList names;
        for (const char* const name :
             {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, "pushButton_send", "checkBox_hex_mode",
              "checkBox_raw_text", "pushButton_crc_hash", "plainTextEdit_send",
              "tableWidget_strings"})
            if (!enabled(name))
                names += name;
        return names;
    }

    const QByteArray bytes = QByteArray(100000, 'x'); // more than the system takes
};

} // namespace

TEST_F(Session, OpensDescribesAndCloses)
{
    const QStringList closed_window = {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, "pushButton_send"};
    click("pushButton_open"); // and the dialog is cancelled
    EXPECT_EQ(description(), "COMx");
    EXPECT_EQ(counters(), "CNT: 0 TX: 0 RX: 0");
    EXPECT_EQ(disabled(), closed_window);
    ASSERT_TRUE(port_open());
    EXPECT_EQ(disabled(), QStringList());
    click("pushButton_open");
    EXPECT_TRUE(closed());
    EXPECT_EQ(disabled(), closed_window);
    EXPECT_EQ(description(), port_name + ",115200,8,N,1");
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Session, EachModeLocksWhatItExcludesAndNothingAfterItsEnd)
{
    const std::pair<const char*, QStringList> modes[] = {
        {LOOP, {AUTO_SEND, IN_TURN}},
        {AUTO_SEND, {IN_TURN, SEND_FILE}},
        {IN_TURN, {AUTO_SEND, SEND_FILE}},
        {SEND_FILE,
         {AUTO_SEND, IN_TURN, "checkBox_hex_mode", "pushButton_crc_hash", "plainTextEdit_send",
          "tableWidget_strings"}},
        {"checkBox_hex_mode", {"checkBox_raw_text"}},
    };
    ASSERT_TRUE(port_open());
    for (const auto& [mode, locked] : modes) {
        check(mode);
        EXPECT_EQ(disabled(), locked) << mode;
        check(mode, false);
        EXPECT_EQ(disabled(), QStringList()) << mode;
    }
}

TEST_F(Session, LeavesTheBoxesAsTheOrderOfClosingMakesThem)
{
    const std::pair<const char*, QStringList> modes[] = {
        {AUTO_SEND, {AUTO_SEND, LOOP, "pushButton_send"}},
        {IN_TURN, {AUTO_SEND, IN_TURN, LOOP, "pushButton_send"}},
        {LOOP, {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, "pushButton_send"}},
    };
    type("text");
    for (const auto& [mode, locked] : modes) {
        ASSERT_TRUE(port_open());
        check(mode);
        click("pushButton_open");
        EXPECT_EQ(disabled(), locked) << mode;
        EXPECT_FALSE(checked(AUTO_SEND) || checked(IN_TURN));
    }
    EXPECT_TRUE(checked(LOOP));
    ASSERT_TRUE(port_open());
    EXPECT_EQ(disabled(), QStringList());
}

TEST_F(Session, DescribesUnusualSettingsWhateverTheLinkType)
{
    configure("QLinkCfgDlg/link_type", 2);
    configure("serialSettings/baudrate", 24);
    configure("serialSettings/custombaud", 123456);
    configure("serialSettings/databits", 2);
    configure("serialSettings/parity", 3);
    configure("serialSettings/stopbits", 1);
    ASSERT_TRUE(port_open());
    EXPECT_EQ(description(), port_name + ",123456,7,M,1.5");
}

TEST_F(Session, SaysThatAPortCannotBeOpened)
{
    answers.under_dialog = [this] { pty.unlink(); };
    EXPECT_FALSE(port_open());
    EXPECT_EQ(answers.boxes, QStringList("note|Open " + port_name + " failed"));
}

TEST_F(Session, MindsOnlyItsOwnPort)
{
    Pty other;
    other.link_into(sandbox.ports_folder(), "other");
    ASSERT_TRUE(port_open());
    other.unlink();
    ASSERT_TRUE(receive("x", 1));
    EXPECT_FALSE(closed());
    EXPECT_TRUE(answers.boxes.isEmpty());
}

TEST_F(Session, EndsWithTheWindow)
{
    configure("serialSettings/timeout", 20000);
    ASSERT_TRUE(port_open());
    type(bytes);
    check(AUTO_SEND);
    click("pushButton_send");
    QByteArray got;
    std::atomic<bool> ended = false;
    std::thread peer([&] {
        while (!ended)
            got += pty.read_now();
    });
    window_end();
    ended = true;
    peer.join();
    got += pty.read(65536, 100);
    EXPECT_EQ(got, bytes) << "accepted bytes are lost at the end";
}

TEST_F(Session, ClosesAtOnceAndOpensAgainWhenTheBytesAreOut)
{
    configure("serialSettings/timeout", 20000);
    ASSERT_TRUE(port_open());
    type(bytes);
    click("pushButton_send");
    click("pushButton_open");
    EXPECT_TRUE(closed());
    QByteArray got;
    QTimer peer;
    QObject::connect(&peer, &QTimer::timeout, [&] {
        EXPECT_TRUE(closed());
        got += pty.read_now();
        peer.setInterval(got.size() < bytes.size() ? 0 : 1000000);
    });
    peer.start(0);
    EXPECT_TRUE(port_open());
    EXPECT_EQ(got, bytes);
    type("next");
    click("pushButton_send");
    EXPECT_EQ(pty.read(4), "next");
}

TEST_F(Session, GivesUpAnOpenThatWaitsWhenAnotherPortIsChosen)
{
    configure("serialSettings/timeout", 20000);
    ASSERT_TRUE(port_open());
    type(bytes);
    click("pushButton_send");
    click("pushButton_open");
    Pty other;
    const QString other_name = other.link_into(sandbox.ports_folder(), "other");
    const auto open_the_other = [&] {
        answers.port = other_name;
        click("pushButton_open");
        EXPECT_FALSE(closed());
        pty.hang_up();
    };
    answers.under_dialog = [&] { QTimer::singleShot(0, window.get(), open_the_other); };
    EXPECT_TRUE(port_open());
    EXPECT_EQ(description().section(',', 0, 0), other_name);
    const QSettings stored("tarnwick.ini", QSettings::IniFormat);
    EXPECT_EQ(QextSerialEnumerator::getPorts()
                  .value(stored.value("serialSettings/port").toInt())
                  .portName,
              other_name);
    EXPECT_TRUE(answers.boxes.isEmpty());
    type("x");
    click("pushButton_send");
    EXPECT_EQ(other.read(1), "x");
}

TEST_F(Session, EchoesNothingIntoAFileOnItsWay)
{
    const QByteArray file = mixed_bytes(200000);
    answers.file = sandbox.path("file");
    file_write(answers.file, file);
    ASSERT_TRUE(port_open());
    check(LOOP);
    check(SEND_FILE);
    click("pushButton_send");
    ASSERT_TRUE(receive("not echoed", 10));
    EXPECT_EQ(pty.read(file.size()), file);
    EXPECT_EQ(shown(), "not echoed");
    check(SEND_FILE, false);
    ASSERT_TRUE(receive("echoed", 16));
    EXPECT_EQ(pty.read(6), "echoed");
}

// The device is pulled out while something goes on.
class Removal : public Session,
                public testing::WithParamInterface<std::tuple<const char*, void (Pty::*)()>>
{
};

TEST_P(Removal, EndsTheSessionWithOneMessage)
{
    const auto [mode, pull] = GetParam();
    answers.file = sandbox.path("file");
    file_write(answers.file, mixed_bytes(1000000));
    type("data");
    set_row(0, true, false, "row");
    ASSERT_TRUE(port_open());
    set("spinBox_send_interval", 1);
    if (*mode)
        check(mode);
    if (mode == SEND_FILE)
        click("pushButton_send");
    ASSERT_TRUE(receive(mixed_bytes(100), 100));
    ASSERT_TRUE(wait_until([&] { return !*mode || !pty.read_now().isEmpty(); }));
    (pty.*pull)();
    ASSERT_TRUE(wait_until([&] { return closed() && !answers.boxes.isEmpty(); }));
    const double cpu_then = cpu_seconds();
    QTest::qWait(300);
    EXPECT_LT(cpu_seconds() - cpu_then, 0.15);
    EXPECT_EQ(answers.boxes, QStringList("|" + port_name + " removed"));
    EXPECT_FALSE(enabled("pushButton_send"));
    EXPECT_FALSE(checked(SEND_FILE));

    pty.unlink();
    Pty next;
    port_name = next.link_into(sandbox.ports_folder(), "next");
    EXPECT_TRUE(port_open());
    type("again");
    click("pushButton_send");
    EXPECT_EQ(next.read(5), "again");
}

INSTANTIATE_TEST_SUITE_P(All, Removal,
                         testing::Combine(testing::Values("", AUTO_SEND, LOOP, SEND_FILE, IN_TURN),
                                          testing::Values(&Pty::unlink, &Pty::hang_up)));
