#include "windowtest.h"

#include <atomic>
#include <thread>

namespace {

class Session : public WindowTest
{
protected:
    Session()
    {
        configure("serialSettings/timeout", 20000);
        window_start();
    }
    void send_more_than_the_system_takes()
    {
        ASSERT_TRUE(port_open());
        send(bytes);
    }

    const QByteArray bytes = QByteArray(100000, 'x');
};

} // namespace

TEST_F(Session, OpensDescribesAndClosesWhateverTheLinkType)
{
    const QStringList closed_window = {AUTO_SEND, IN_TURN, SEND_FILE, LOOP, SEND};
    click(OPEN); // and the dialog is cancelled
    EXPECT_EQ(description(), "COMx");
    for (const char* const settings : {",115200,8,N,1", ",123456,7,M,1.5"}) {
        EXPECT_EQ(disabled(), closed_window);
        ASSERT_TRUE(port_open());
        EXPECT_EQ(disabled(), QStringList());
        click(OPEN);
        EXPECT_EQ(description(), port_name + settings);
        configure("QLinkCfgDlg/link_type", 2);
        for (const auto& [key, value] :
             {std::pair("baudrate", 24), std::pair("custombaud", 123456), std::pair("databits", 2),
              std::pair("parity", 3), std::pair("stopbits", 1)})
            configure(QString("serialSettings/") + key, value);
    }
    EXPECT_EQ(disabled(), closed_window);
    answers.under_dialog = [this] { pty.unlink(); };
    EXPECT_FALSE(port_open());
    EXPECT_EQ(answers.boxes, QStringList("note|Open " + port_name + " failed"));
}

TEST_F(Session, EndsWithTheWindowAndLosesNothing)
{
    send_more_than_the_system_takes();
    check(AUTO_SEND);
    QByteArray got;
    std::atomic<bool> ended = false;
    std::thread peer([&] {
        while (!ended)
            got += pty.read_now();
    });
    window_end();
    ended = true;
    peer.join();
    for (int pauses = 0; pauses < 1000 && got.size() < bytes.size(); ++pauses) {
        QThread::msleep(10); // without the event loop, which could let out more
        got += pty.read_now();
    }
    EXPECT_EQ(got, bytes);
}

TEST_F(Session, ClosesAtOnceAndOpensAgainWhenTheBytesAreOut)
{
    send_more_than_the_system_takes();
    click(OPEN);
    EXPECT_TRUE(closed());
    QByteArray got;
    QTimer peer;
    QObject::connect(&peer, &QTimer::timeout, [&] {
        EXPECT_TRUE(closed() || got.size() >= bytes.size());
        got += pty.read_now();
    });
    peer.start(0);
    EXPECT_TRUE(port_open());
    EXPECT_EQ(got, bytes);
    send("next");
    EXPECT_TRUE(wait_until([&] { return got.endsWith("next"); }));
}

TEST_F(Session, GivesUpAnOpenThatWaitsWhenAnotherPortIsChosen)
{
    send_more_than_the_system_takes();
    click(OPEN);
    Pty other;
    const QString other_name = other.link_into(sandbox.ports_folder(), "other");
    const auto open_the_other = [&] {
        answers.port = other_name;
        click(OPEN);
        pty.hang_up();
    };
    answers.under_dialog = [&] { QTimer::singleShot(0, window.get(), open_the_other); };
    EXPECT_TRUE(port_open());
    EXPECT_TRUE(description().startsWith(other_name + ","));
    const QList<QextPortInfo> ports = QextSerialEnumerator::getPorts();
    EXPECT_EQ(ports.value(stored("serialSettings/port").toInt()).portName, other_name);
    EXPECT_TRUE(answers.boxes.isEmpty());
    send("x");
    EXPECT_EQ(other.read(1), "x");
}

TEST_F(Session, EndsWithOneMessageWhenItsDeviceIsPulledOut)
{
    file_choose(1000000);
    set_row(0, true, false, "row");
    Pty other;
    for (const auto pull : {&Pty::unlink, &Pty::hang_up})
        for (const char* const mode : {SEND, AUTO_SEND, LOOP, SEND_FILE, IN_TURN}) {
            SCOPED_TRACE(mode);
            Pty device;
            port_name = device.link_into(sandbox.ports_folder(), "device");
            other.link_into(sandbox.ports_folder(), "other");
            ASSERT_TRUE(port_open());
            other.unlink(); // which is none of the session's business
            device.write("received");
            type("typed");
            find<QAbstractButton>(mode)->click();
            click(SEND);
            ASSERT_TRUE(wait_until([&] { return !device.read_now().isEmpty(); }));
            EXPECT_TRUE(answers.boxes.isEmpty());
            (device.*pull)();
            ASSERT_TRUE(wait_until([&] { return closed() && !answers.boxes.isEmpty(); }));
            EXPECT_EQ(boxes_taken(), QStringList("|" + port_name + " removed"));
            EXPECT_FALSE(enabled(SEND) || checked(SEND_FILE));
            check(LOOP, false);
        }
}
