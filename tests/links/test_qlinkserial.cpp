// The serial link on a real tty.
#include "linklog.h"
#include "portsettings.h"
#include "pty.h"
#include "qlinkserial.h"
#include "sandbox.h"
#include "wait.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <algorithm>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace {

struct SerialPair
{
    explicit SerialPair(long timeout_ms, bool verbose = false)
        : link(pty.device(), plain_settings(timeout_ms), verbose)
    {
        EXPECT_EQ(link.open(), 0);
    }

    void arrive(const QByteArray& bytes)
    {
        ASSERT_TRUE(pty.write(bytes));
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() == bytes.size(); }));
    }

    Pty pty;
    QLinkSerial link;
    LinkLog log{&link};
};

} // namespace

TEST(QLinkSerial, AnswersByTheTableWhileClosed)
{
    QLinkSerial link("/dev/null/none", plain_settings(), true);
    LinkLog log(&link);
    char buffer[4];
    link.flush();
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(link.close(), -6);
    EXPECT_EQ(link.bytes_available(), -6);
    EXPECT_EQ(link.getchar(), -6);
    EXPECT_EQ(link.putchar('x'), -6);
    EXPECT_EQ(link.read(buffer, 4), -6);
    EXPECT_EQ(link.write("x", 1), -6);
    EXPECT_FALSE(link.can_read_line());
    EXPECT_EQ(link.readline(buffer, 4), -6);
    EXPECT_EQ(link.qt_metacast("QLink"), static_cast<QLink*>(&link));
    EXPECT_EQ(log.take(), QStringList());

    EXPECT_EQ(link.open(), -11);
    EXPECT_EQ(link.close(), -6);
    EXPECT_EQ(log.take(), QStringList("Open /dev/null/none failed"));
}

TEST(QLinkSerial, StaysOpenWhenOpenedTwiceAndOpensAgain)
{
    SerialPair pair(20000);
    EXPECT_EQ(pair.link.open(), -1);
    EXPECT_EQ(pair.log.take(), QStringList("Serial port already opened"));
    EXPECT_EQ(pair.link.close(), 0);
    EXPECT_FALSE(pair.link.is_open());
    EXPECT_EQ(pair.link.open(), 0);
    EXPECT_EQ(pair.link.write("on", 2), 2);
    EXPECT_EQ(pair.pty.read(2), "on");
}

TEST(QLinkSerial, MovesAndLogsBytesToTheLetter)
{
    SerialPair pair(100, true);
    char buffer[20];
    EXPECT_EQ(pair.link.read(buffer, 3), 0);
    EXPECT_EQ(pair.link.getchar(), 0);
    EXPECT_EQ(pair.log.take(), QStringList());

    EXPECT_EQ(pair.link.putchar(0x1F0A), 0x1F0A);
    EXPECT_EQ(pair.link.write("\x01\xFF", 2), 2);
    EXPECT_EQ(pair.pty.read(3), "\x0A\x01\xFF");
    pair.arrive(QByteArray("\xFF\x07"
                           "abc\ndrop",
                           10));
    EXPECT_TRUE(pair.link.can_read_line());
    EXPECT_EQ(pair.link.getchar(), 255);
    EXPECT_EQ(pair.link.read(buffer, 2), 2);
    EXPECT_EQ(pair.link.readline(buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "bc\n");
    pair.link.flush();
    EXPECT_EQ(pair.link.bytes_available(), 0);
    EXPECT_EQ(pair.log.take(),
              QStringList({"ser: putchar (1f0a)", "ser: write   (01 FF)", "ser: getchar (ff)",
                           "ser: read    (07 61)", "ser: readline(62 63 0A)"}));
}

TEST(QLinkSerial, ReadsADribblingReplyWholeOnAnotherThread)
{
    SerialPair pair(20000);
    const QByteArray reply = mixed_bytes(40);
    QByteArray got(reply.size(), '#');
    std::thread driver([&] {
        EXPECT_EQ(pair.link.write("?", 1), 1);
        EXPECT_EQ(pair.link.read(got.data(), got.size()), got.size());
    });
    EXPECT_EQ(pair.pty.read(1), "?");
    for (const char byte : reply) {
        EXPECT_EQ(::write(pair.pty.master_fd(), &byte, 1), 1);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    driver.join();
    EXPECT_EQ(got, reply);
}

TEST(QLinkSerial, MayBeOpenedAndClosedOnOtherThreadsThanItsOwn)
{
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(20000), false);
    const auto on_another_thread = [](auto work) {
        std::promise<void> done; // a hand-over that ThreadSanitizer sees, unlike QThread::wait
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            work();
            done.set_value();
        }));
        thread->start();
        done.get_future().wait();
        EXPECT_TRUE(thread->wait(PATIENCE_MS));
    };
    on_another_thread([&] { EXPECT_EQ(link.open(), 0); });
    EXPECT_EQ(link.write("a", 1), 1);
    EXPECT_EQ(link.close(), 0);
    EXPECT_EQ(link.open(), 0);
    on_another_thread([&] {
        EXPECT_EQ(link.write("b", 1), 1);
        EXPECT_EQ(link.close(), 0);
    });
    EXPECT_EQ(pty.read(2), "ab");
}

TEST(QLinkSerial, KeepsItsTimeout)
{
    SerialPair pair(200);
    qint64 quickest = PATIENCE_MS; // of some attempts, as other programs may delay each of them
    char buffer[10];
    for (int i = 0; i < 5; ++i) {
        pair.arrive("abc");
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(pair.link.read(buffer, sizeof buffer), 3);
        EXPECT_GE(clock.elapsed(), 160);
        quickest = std::min(quickest, clock.elapsed());
    }
    EXPECT_LE(quickest, 240);
}

TEST(QLinkSerial, TellsOnceThatItsDeviceHasGone)
{
    Sandbox sandbox;
    Pty pty, other;
    const QString name = pty.link_into(sandbox.ports_folder(), "port");
    other.link_into(sandbox.ports_folder(), "other");
    QLinkSerial link(name, plain_settings(20000), false);
    ASSERT_EQ(link.open(), 0);
    QextSerialEnumerator watcher;
    QSignalSpy any(&watcher, &QextSerialEnumerator::deviceRemoved);
    watcher.setUpNotifications();
    QSignalSpy removed(&link, &QLinkSerial::removed);
    other.unlink();
    EXPECT_TRUE(wait_until([&] { return any.count() == 1; }));
    EXPECT_EQ(removed.count(), 0);

    // The thread that drives the link learns it from its read, the owner from the signal.
    int result = 0;
    std::thread driver([&] {
        char byte;
        result = link.read(&byte, 1);
    });
    pty.hang_up();
    EXPECT_TRUE(wait_until([&] { return removed.count() == 1; }));
    driver.join();
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(link.is_open());
    EXPECT_LT(link.getchar(), 0);
    EXPECT_LT(link.putchar('x'), 0);
    EXPECT_EQ(link.write("x", 1), -1);
    pty.unlink();
    EXPECT_TRUE(wait_until([&] { return any.count() == 2; }));
    EXPECT_EQ(removed.count(), 1);
}
