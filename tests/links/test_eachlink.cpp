// The three links against a pseudo-terminal, sockets and socat.
#include "links/qlinkserial.h"
#include "links/qlinktcpip.h"
#include "links/qlinkwinsock.h"
#include "links/winsock.h"
#include "loglines.h"
#include "netpeer.h"
#include "plainsettings.h"
#include "pty.h"
#include "sandbox.h"
#include "wait.h"

#include <QNetworkDatagram>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>

namespace {

constexpr int FOREVER_MS = 3600 * 1000; // who waits for it hangs
constexpr int NO_SERVER = 1;            // a port on which nobody listens
const QString ACCEPTOR = "TCP-LISTEN:0,bind=127.0.0.1";

tcpip_cfg loopback(int port, int timeout_ms = FOREVER_MS, int protocol = TCPIP_TCP_CLIENT)
{
    return {TCPIP_V4, protocol, "127.0.0.1", port, 0, true, timeout_ms};
}

enum Kind { SERIAL, TCPIP, WINSOCK };

// A link of one kind, what may be on its far side, and calls on it as byte arrays.
struct EachLink : testing::TestWithParam<Kind>
{
    void set(const tcpip_cfg& cfg)
    {
        tcpip.settings_set(&cfg);
        winsock.settings_set(&cfg);
    }
    int write(const QByteArray& bytes) { return link.write(bytes.constData(), bytes.size()); }
    QByteArray read(int count)
    {
        QByteArray bytes(count, '#');
        bytes.resize(qMax(0, link.read(bytes.data(), count)));
        return bytes;
    }
    // The lines since the last call, in one, without the words that network links begin with.
    QString logged() { return lines(log).join('|').remove("tcpip: "); }

    // Opens the link to `pty`, over the network by socat, and waits until bytes pass.
    void open_to_pty()
    {
        if (kind != SERIAL)
            peer = NetPeer::socat(ACCEPTOR, pty.device() + ",raw,echo=0");
        set(loopback(peer ? peer->port() : 0));
        ASSERT_EQ(link.open(), 0);
        EXPECT_EQ(write("go"), 2);
        // Without an event loop, which would send what a write left unsent.
        for (QByteArray passed; passed != "go"; passed += pty.read_now())
            QThread::usleep(200);
        lines(log);
    }
    // Sends from the pseudo-terminal, and waits until the link has it.
    void arrive(const QByteArray& bytes)
    {
        ASSERT_TRUE(pty.write(bytes));
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() == bytes.size(); }));
    }
    // Opens the link to a socket of this program.
    QTcpSocket* connected(int timeout_ms = FOREVER_MS)
    {
        EXPECT_TRUE(server.isListening() || server.listen(QHostAddress::LocalHost));
        set(loopback(server.serverPort(), timeout_ms));
        EXPECT_EQ(link.open(), 0);
        EXPECT_TRUE(server.waitForNewConnection(PATIENCE_MS));
        lines(log);
        return server.nextPendingConnection();
    }
    static void send(QTcpSocket* far, const QByteArray& bytes)
    {
        far->write(bytes);
        EXPECT_TRUE(far->waitForBytesWritten(PATIENCE_MS));
    }

    const Kind kind = GetParam();
    Pty pty;
    std::unique_ptr<NetPeer> peer;
    QTcpServer server;
    QLinkSerial serial{pty.device(), plain_settings(FOREVER_MS), true};
    QLinkTcpip tcpip{nullptr};
    QLinkWinsock winsock{nullptr};
    QObject* const objects[3] = {&serial, &tcpip, &winsock};
    QLink& link = *qobject_cast<QLink*>(objects[kind]);
    QSignalSpy log{objects[kind], SIGNAL(log(QString))};
};
INSTANTIATE_TEST_SUITE_P(Links, EachLink, testing::Values(SERIAL, TCPIP, WINSOCK));
struct NetworkLink : EachLink
{
};
INSTANTIATE_TEST_SUITE_P(Links, NetworkLink, testing::Values(TCPIP, WINSOCK));

TEST_P(EachLink, AnswersByItsTableWhileClosed)
{
    char buffer[4];
    link.flush();
    EXPECT_FALSE(link.is_open());
    EXPECT_FALSE(link.can_read_line());
    EXPECT_EQ(link.bytes_available(), -6);
    EXPECT_EQ(link.getchar(), -6);
    EXPECT_EQ(link.putchar('x'), -6);
    EXPECT_EQ(link.read(buffer, 4), -6);
    EXPECT_EQ(link.write("x", 1), -6);
    EXPECT_EQ(link.readline(buffer, 4), kind == WINSOCK ? 0 : -6);
    EXPECT_EQ(link.close(), kind == SERIAL ? -6 : 0);
    const QString not_open = " failed, connection not opened";
    EXPECT_EQ(logged(), QStringList({"", "write" + not_open + "|readline" + not_open,
                                     "write" + not_open})[kind]);
}

TEST_P(EachLink, MovesAndLogsBytesToTheLetter)
{
    const char* const logs[] = {
        "ser: write   (68 69)|ser: putchar (1f0a)|ser: read    (41 00)|ser: getchar (ff)|"
        "ser: readline(0A)",
        "write   (68 69)|putchar (1f0a)|read    (41 00)|getchar (ff)|drop 3 bytes|read    ()|"
        "closing ...|unconnected",
        "write   [68 69]|write   [0A]|putchar [1f0a]|read(2)[41 00]|read(1)[FF]|getchar [ff]|"
        "read(1)[0A]|getchar [0a]|read(3)[78 79 7A]|drop 3 bytes|read(0)[]"};
    open_to_pty();
    tcpip.verbose_set(true);
    winsock.log_hex_set(true);
    EXPECT_EQ(write("hi"), 2);
    EXPECT_EQ(link.putchar(0x1F0A), 0x1F0A);
    EXPECT_EQ(pty.read(3), "hi\n");
    arrive(QByteArray("A\0\xFF\n", 4));
    EXPECT_EQ(read(2), QByteArray("A\0", 2));
    EXPECT_EQ(link.getchar(), 255);
    char line[10];
    EXPECT_EQ(link.can_read_line(), kind != WINSOCK);
    EXPECT_EQ(link.readline(line, sizeof line), 1);
    EXPECT_STREQ(line, "\n");
    arrive("xyz");
    link.flush();
    EXPECT_EQ(link.bytes_available(), 0);
    link.flush();
    EXPECT_EQ(read(0), "");
    link.close();
    EXPECT_EQ(logged(), logs[kind]);
}

TEST_P(EachLink, CarriesAllBytesInOrderAndClosesAfterTheLast)
{
    open_to_pty();
    const QByteArray data = mixed_bytes(1 << 22); // more than the system's buffers hold
    std::thread device([&] {
        for (const char* burst : {"0123", "4567", "89"}) {
            EXPECT_TRUE(pty.write(burst));
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        EXPECT_TRUE(pty.write(data.left(3000)));
        EXPECT_EQ(pty.read(data.size()), data);
    });
    EXPECT_EQ(read(10), "0123456789");
    const QByteArray front = read(1000);
    EXPECT_EQ(front + read(2000), data.left(3000));
    EXPECT_EQ(write(data), data.size());
    EXPECT_EQ(link.close(), 0);
    device.join();
}

TEST_P(NetworkLink, OpensAfterRefusalsAndAnewWhenOpen)
{
    for (const int protocol : {-1, 1, 3, 4, 5})
        if (kind == TCPIP || protocol < TCPIP_UDP) {
            set(loopback(NO_SERVER, FOREVER_MS, protocol));
            EXPECT_EQ(link.open(), -1) << protocol;
            EXPECT_EQ(lines(log), QStringList("tcpip: protocol not supported"));
        }
    set(loopback(NO_SERVER));
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(logged(), kind == TCPIP
                            ? "looking up host|connecting ...|unconnected|connected failed"
                            : "connect to host 127.0.0.1:1 failed");
    QTcpSocket* const first = connected();
    set(loopback(NO_SERVER)); // leaves the connection alone
    EXPECT_EQ(write("1"), 1);
    EXPECT_TRUE(wait_until([&] { return first->bytesAvailable() == 1; }));
    QTcpSocket* const far = connected();
    EXPECT_TRUE(wait_until([&] { return first->state() == QAbstractSocket::UnconnectedState; }));
    // As in a tool's thread, which runs no event loop: what comes late doesn't pass for the next.
    send(far, "late");
    link.flush();
    send(far, "next");
    far->close();
    EXPECT_EQ(read(10), "next");
    EXPECT_EQ(read(10), "");
    EXPECT_TRUE(link.is_open());
    std::signal(SIGPIPE, SIG_DFL); // would end this program
    EXPECT_TRUE(wait_until([&] { return write("x") < 0; }));
    EXPECT_EQ(link.putchar('x'), -5);
}

// Signals arrive all the time, as from a profiler's timer.
TEST_P(NetworkLink, WaitsForItsTimeoutWhateverSignalsCome)
{
    std::signal(SIGALRM, [](int) {});
    constexpr itimerval OFTEN = {{0, 5000}, {0, 5000}}, NEVER = {};
    setitimer(ITIMER_REAL, &OFTEN, nullptr);
    QTcpSocket listener, queued; // one fills the queue, the system leaves further ones unanswered
    ASSERT_TRUE(listener.bind(QHostAddress(QHostAddress::LocalHost)));
    ASSERT_EQ(::listen(int(listener.socketDescriptor()), 0), 0);
    queued.connectToHost(QHostAddress::LocalHost, listener.localPort());
    ASSERT_TRUE(queued.waitForConnected(PATIENCE_MS));
    set(loopback(listener.localPort(), 300));
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(link.open(), -1);
    EXPECT_GE(clock.elapsed(), 240);
    EXPECT_TRUE(lines(log).last().endsWith("failed"));

    send(connected(300), QByteArray("%2\0c", 4));
    tcpip.verbose_set(true);
    winsock.log_hex_set(true);
    winsock.log_text_set(true);
    EXPECT_EQ(write(QByteArray("h%1\0!", 5)), 5);
    clock.start();
    EXPECT_EQ(read(10), QByteArray("%2\0c", 4));
    EXPECT_GE(clock.elapsed(), 240);
    EXPECT_EQ(logged(),
              kind == TCPIP
                  ? "write   (68 25 31 00 21)|read    (25 32 00 63)"
                  : "write   [68 25 31 00 21]|write   [h%1]|read(-1)[25 32 00 63]|read(-1)[%2]");
    EXPECT_EQ(link.getchar(), -5);
    setitimer(ITIMER_REAL, &NEVER, nullptr);
    // A peer that stops reading.
    const QByteArray megabyte(1 << 20, 'x');
    int result = megabyte.size();
    for (int i = 0; i < 16 && result == megabyte.size(); ++i)
        result = write(megabyte);
    EXPECT_EQ(result == megabyte.size(), kind == TCPIP); // Qt's socket takes all at once
    set(loopback(0, -1));
    EXPECT_EQ(link.close(), 0);
}

TEST_P(NetworkLink, SpeaksUdpAndDropsAllDatagramsThatWait)
{
    QUdpSocket far;
    ASSERT_TRUE(far.bind(QHostAddress(QHostAddress::AnyIPv4)));
    QNetworkDatagram request;
    for (const int protocol : {4, 5, 3, 2}) {
        if (kind == TCPIP && protocol != TCPIP_UDP)
            continue;
        set(loopback(far.localPort(), 300, protocol));
        ASSERT_EQ(link.open(), 0);
        if (write("ask") < 0 && errno == ENETUNREACH)
            continue; // no interface here takes broadcasts
        ASSERT_TRUE(wait_until([&] { return far.hasPendingDatagrams(); }));
        request = far.receiveDatagram();
        EXPECT_EQ(request.data(), "ask");
        if (protocol == TCPIP_UDP_BROADCAST)
            continue;
        far.writeDatagram(request.makeReply("reply"));
        EXPECT_EQ(read(5), "reply");
    }
    if (kind == TCPIP)
        return;
    const QNetworkDatagram stale = request.makeReply("stale");
    far.writeDatagram(stale);
    far.writeDatagram(stale);
    link.flush();
    EXPECT_EQ(link.bytes_available(), 0);
    winsock.log_hex_set(true);
    // Another one at each read, without an end; yet the flush ends.
    QObject::connect(&winsock, &QLinkWinsock::log, [&] { far.writeDatagram(stale); });
    far.writeDatagram(stale);
    link.flush();
}

TEST(WinsockLink, LeavesNothingAfterAFailedOpen)
{
    tcpip_cfg cfg = loopback(12593);
    std::fill(std::begin(cfg.addr), std::end(cfg.addr), '9'); // no NUL
    QLinkWinsock link(&cfg);
    QSignalSpy log(&link, &QLinkWinsock::log);
    EXPECT_EQ(link.open(), -1);
    cfg = loopback(1, -1, TCPIP_UDP);
    link.settings_set(&cfg);
    EXPECT_EQ(link.open(), -1);
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    const rlimit none = {0, files.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(link.open(), -1);
    setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_EQ(
        lines(log),
        QStringList({"tcpip: connect to host " + QString(63, '9') + ":12593 failed",
                     "tcpip: set socket sending timeout failed", "tcpip: create socket failed"}));
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(winsock::startups_in_use(), 0);
}

// At each line in turn, as a view that gives up or reconnects would.
TEST(TcpipLink, MayBeClosedAndOpenedByAHandlerOfItsLog)
{
    const auto peer = NetPeer::socat(ACCEPTOR + ",fork", "SYSTEM:printf abc; sleep 0.02");
    const tcpip_cfg cfg = loopback(peer->port(), PATIENCE_MS);
    for (const auto meddle : {&QLinkTcpip::close, &QLinkTcpip::open})
        for (int at = 1, lines = at; lines >= at; ++at) {
            SCOPED_TRACE(at);
            bool unconnected = false;
            lines = 0;
            QLinkTcpip link(&cfg);
            link.verbose_set(true);
            QObject::connect(&link, &QLinkTcpip::log, &link, [&](const QString& line) {
                unconnected = unconnected || line == "tcpip: unconnected";
                if (++lines == at)
                    (link.*meddle)();
            });
            char buffer[10];
            link.open();
            link.write("x", 1);
            EXPECT_LE(link.read(buffer, sizeof buffer), 3);
            unconnected = false;
            link.open();
            EXPECT_TRUE(wait_until([&] { return unconnected; })); // now from an event loop
            link.flush();
        }
}

TEST(SerialLink, ReportsOnceThatItsDeviceHasGone)
{
    Sandbox sandbox;
    Pty pty, other;
    const QString name = pty.link_into(sandbox.ports_folder(), "port");
    other.link_into(sandbox.ports_folder(), "other");
    QLinkSerial link(name, plain_settings(FOREVER_MS), false);
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
    char byte = 0;
    std::thread driver([&] { EXPECT_EQ(link.read(&byte, 1), -1); });
    pty.hang_up();
    EXPECT_TRUE(wait_until([&] { return removed.count() == 1; }));
    driver.join();
    EXPECT_TRUE(link.is_open());
    EXPECT_LT(link.getchar(), 0);
    EXPECT_LT(link.putchar('x'), 0);
    EXPECT_EQ(link.write("x", 1), -1);
    pty.unlink();
    EXPECT_TRUE(wait_until([&] { return any.count() == 2; }));
    EXPECT_EQ(removed.count(), 1);
}

} // namespace
