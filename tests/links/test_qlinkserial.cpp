// The serial link on a real tty.
#include "links/qlinkserial.h"
#include "loglines.h"
#include "plainsettings.h"
#include "pty.h"
#include "sandbox.h"
#include "wait.h"

#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace {

TEST(QLinkSerial, MovesAndLogsBytesToTheLetter)
{
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(100), true);
    QSignalSpy log(&link, &QLinkSerial::log);
    char buffer[20];
    ASSERT_EQ(link.open(), 0);
    EXPECT_EQ(link.read(buffer, 3), 0);
    EXPECT_EQ(link.getchar(), 0);
    EXPECT_EQ(lines(log), QStringList());
    EXPECT_EQ(link.open(), -1);

    EXPECT_EQ(link.putchar(0x1F0A), 0x1F0A);
    EXPECT_EQ(link.write("\x01\xFF", 2), 2);
    EXPECT_EQ(pty.read(3), "\x0A\x01\xFF");
    ASSERT_TRUE(pty.write("\xFF\7abc\ndrop"));
    ASSERT_TRUE(wait_until([&] { return link.bytes_available() == 10; }));
    EXPECT_TRUE(link.can_read_line());
    EXPECT_EQ(link.getchar(), 255);
    EXPECT_EQ(link.read(buffer, 2), 2);
    EXPECT_EQ(link.readline(buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "bc\n");
    link.flush();
    EXPECT_EQ(link.bytes_available(), 0);
    EXPECT_EQ(lines(log), QStringList({"Serial port already opened", "ser: putchar (1f0a)",
                                       "ser: write   (01 FF)", "ser: getchar (ff)",
                                       "ser: read    (07 61)", "ser: readline(62 63 0A)"}));
}

TEST(QLinkSerial, LeavesNothingOfABacklogAfterAFlush)
{
    Pty pty;
    QLinkSerial link(pty.device(), plain_settings(20000), false);
    ASSERT_EQ(link.open(), 0);
    for (const bool read_ahead : {false, true}) {
        const QByteArray stale = mixed_bytes(1000);
        while (::write(pty.master_fd(), stale.constData(), size_t(stale.size())) > 0)
            if (read_ahead) {
                EXPECT_GT(link.bytes_available(), 0);
            }
        link.flush();
        EXPECT_EQ(link.bytes_available(), 0);
        ASSERT_TRUE(pty.write("new"));
        char buffer[4] = {};
        EXPECT_EQ(link.read(buffer, 3), 3);
        EXPECT_STREQ(buffer, "new");
    }
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
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(link.open(), 0);
    on_another_thread([&] {
        EXPECT_EQ(link.write("b", 1), 1);
        EXPECT_EQ(link.close(), 0);
    });
    EXPECT_EQ(pty.read(2), "ab");
}

TEST(QLinkSerial, ReportsOnceThatItsDeviceHasGone)
{
    Sandbox sandbox;
    Pty pty, other;
    const QString name = pty.link_into(sandbox.ports_folder(), "port");
    other.link_into(sandbox.ports_folder(), "other");
    QLinkSerial link(name, plain_settings(20000), false);
    ASSERT_EQ(link.open(), 0);
    EXPECT_TRUE(link.findChildren<QObject*>().isEmpty()) << "nobody has asked for removal";
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

} // namespace
