// Both network links against sockets, socat and ser2net on loopback.
#include "links/qlinktcpip.h"
#include "links/qlinkwinsock.h"
#include "links/winsock.h"
#include "loglines.h"
#include "netpeer.h"
#include "plainsettings.h"
#include "pty.h"
#include "wait.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QNetworkDatagram>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUdpSocket>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>

namespace {

tcpip_cfg loopback(int port, int timeout_ms, int protocol = TCPIP_TCP_CLIENT)
{
    tcpip_cfg cfg = tcpip_defaults();
    std::strcpy(cfg.addr, "127.0.0.1");
    cfg.remote_port = port;
    cfg.timeout = timeout_ms;
    cfg.protocol = protocol;
    return cfg;
}

// What the tests of the two links need to know of either.
template <typename Link> struct Traits;

template <> struct Traits<QLinkTcpip>
{
    static constexpr auto LOG_DATA = &QLinkTcpip::verbose_set;
    static constexpr bool WRITES_AT_ONCE = true;
    static inline const QList<int> REFUSED_PROTOCOLS = {-1, 1, 3, 4, 5};
    static inline const QStringList REFUSED_LOG = {"tcpip: looking up host",
                                                   "tcpip: connecting ...", "tcpip: unconnected",
                                                   "tcpip: connected failed"};
    static inline const QStringList DATA_LOG = {"tcpip: write   (68 69)",    "tcpip: putchar (21)",
                                                "tcpip: read    (41 00 FF)", "tcpip: getchar (0a)",
                                                "tcpip: drop 3 bytes",       "tcpip: read    ()",
                                                "tcpip: closing ...",        "tcpip: unconnected"};
};

template <> struct Traits<QLinkWinsock>
{
    static constexpr auto LOG_DATA = &QLinkWinsock::log_hex_set;
    static constexpr bool WRITES_AT_ONCE = false;
    static inline const QList<int> REFUSED_PROTOCOLS = {-1, 1};
    static inline const QStringList REFUSED_LOG = {"tcpip: connect to host 127.0.0.1:%1 failed"};
    static inline const QStringList DATA_LOG = {
        "tcpip: write   [68 69]",   "tcpip: write   [21]", "tcpip: putchar [21]",
        "tcpip: read(3)[41 00 FF]", "tcpip: read(1)[0A]",  "tcpip: getchar [0a]",
        "tcpip: read(3)[78 79 7A]", "tcpip: drop 3 bytes", "tcpip: read(0)[]"};
};

// A link through another program to the test's pseudo-terminal, and calls on it as byte arrays.
template <typename LinkType> class NetworkLink : public testing::Test
{
public:
    ~NetworkLink() override
    {
        link.close();
        EXPECT_EQ(winsock::startups_in_use(), 0);
    }

    // Opens the link to a program that serves `pty`, and waits until bytes pass.
    void bridge(std::unique_ptr<NetPeer> program, int timeout_ms)
    {
        peer = std::move(program);
        set(loopback(peer->port(), timeout_ms));
        ASSERT_TRUE(wait_until([&] { return link.open() == 0; }));
        EXPECT_EQ(write("go"), 2);
        // Without an event loop, which would send what a write left unsent.
        QByteArray passed;
        for (clock.start(); passed.size() < 2 && clock.elapsed() < PATIENCE_MS;) {
            QThread::usleep(200);
            passed += pty.read_now();
        }
        ASSERT_EQ(passed, "go");
        lines(log);
    }
    std::unique_ptr<NetPeer> socat()
    {
        return NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", pty.device() + ",raw,echo=0");
    }

    void set(const tcpip_cfg& cfg) { link.settings_set(&cfg); }

    // Sends from the far side, and waits until the link has it.
    void arrive(const QByteArray& bytes)
    {
        ASSERT_TRUE(pty.write(bytes));
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() == bytes.size(); }));
    }

    int write(const QByteArray& bytes) { return link.write(bytes.constData(), bytes.size()); }
    QByteArray read(int count)
    {
        QByteArray bytes(count, '#');
        bytes.resize(qMax(0, link.read(bytes.data(), count)));
        return bytes;
    }

    Pty pty;
    std::unique_ptr<NetPeer> peer;
    LinkType link{nullptr};
    QSignalSpy log{&link, &LinkType::log};
    QElapsedTimer clock;
};
using NetworkLinks = testing::Types<QLinkTcpip, QLinkWinsock>;
TYPED_TEST_SUITE(NetworkLink, NetworkLinks);

TYPED_TEST(NetworkLink, RefusesProtocolsThatItDoesNotHave)
{
    for (const int protocol : Traits<TypeParam>::REFUSED_PROTOCOLS) {
        this->set(loopback(1, 100, protocol));
        EXPECT_EQ(this->link.open(), -1) << protocol;
        EXPECT_FALSE(this->link.is_open());
        EXPECT_EQ(lines(this->log), QStringList("tcpip: protocol not supported"));
    }
}

TYPED_TEST(NetworkLink, OpensAfterARefusalAndAnewWhenOpen)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const tcpip_cfg good = loopback(server.serverPort(), 20000);
    QTcpSocket bound; // so that nobody else can listen there
    ASSERT_TRUE(bound.bind(QHostAddress::LocalHost));
    const tcpip_cfg bad = loopback(bound.localPort(), 20000);

    this->set(bad);
    EXPECT_EQ(this->link.open(), -1);
    EXPECT_EQ(lines(this->log), QStringList(Traits<TypeParam>::REFUSED_LOG)
                                    .replaceInStrings("%1", QString::number(bad.remote_port)));
    this->set(good);
    EXPECT_EQ(this->link.open(), 0);
    EXPECT_TRUE(this->link.is_open());
    ASSERT_TRUE(wait_until([&] { return server.hasPendingConnections(); }));
    QTcpSocket* const first = server.nextPendingConnection();
    this->set(bad); // leaves the connection alone
    EXPECT_EQ(this->write("1"), 1);
    EXPECT_TRUE(wait_until([&] { return first->bytesAvailable() == 1; }));
    this->set(good);
    EXPECT_EQ(this->link.open(), 0);
    EXPECT_TRUE(wait_until([&] { return first->state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_TRUE(wait_until([&] { return server.hasPendingConnections(); }));
}

TYPED_TEST(NetworkLink, GivesUpOnAPeerThatNeverAccepts)
{
    QTcpSocket listener;
    ASSERT_TRUE(listener.bind(QHostAddress::LocalHost));
    ASSERT_EQ(::listen(int(listener.socketDescriptor()), 0), 0);
    // Fill the queue; the system leaves further ones without an answer.
    std::vector<std::unique_ptr<QTcpSocket>> queue;
    do {
        queue.push_back(std::make_unique<QTcpSocket>());
        queue.back()->connectToHost(QHostAddress::LocalHost, listener.localPort());
    } while (queue.back()->waitForConnected(200));

    this->set(loopback(listener.localPort(), 300));
    this->clock.start();
    EXPECT_EQ(this->link.open(), -1);
    EXPECT_GE(this->clock.elapsed(), 240);
    EXPECT_LT(this->clock.elapsed(), PATIENCE_MS);
    EXPECT_TRUE(lines(this->log).last().endsWith("failed"));
}

TYPED_TEST(NetworkLink, GivesWhatCameBeforeThePeerClosed)
{
    std::signal(SIGPIPE, SIG_DFL); // would end this program
    const auto peer = NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", "SYSTEM:printf abc");
    this->set(loopback(peer->port(), 60000));
    ASSERT_EQ(this->link.open(), 0);
    this->clock.start();
    EXPECT_EQ(this->read(10), "abc");
    EXPECT_EQ(this->read(10), "");
    EXPECT_LT(this->clock.elapsed(), 50000) << "waited for a peer that has gone";
    EXPECT_TRUE(this->link.is_open());
    EXPECT_TRUE(wait_until([&] { return this->write("x") < 0; }));
    EXPECT_EQ(this->link.putchar('x'), -5);
}

TYPED_TEST(NetworkLink, SpeaksUdpBothWays)
{
    const auto echo = NetPeer::socat("UDP-LISTEN:0,bind=127.0.0.1", "PIPE");
    this->set(loopback(echo->port(), 20000, TCPIP_UDP));
    ASSERT_EQ(this->link.open(), 0);
    for (const QByteArray& datagram : {QByteArray("ping"), mixed_bytes(100)}) {
        ASSERT_EQ(this->write(datagram), datagram.size());
        EXPECT_EQ(this->read(datagram.size()), datagram);
    }
}

TYPED_TEST(NetworkLink, CarriesBurstsInOrderThroughSocatAndSer2net)
{
    for (const bool ser2net : {false, true}) {
        this->bridge(ser2net ? NetPeer::ser2net(this->pty.device()) : this->socat(), 60000);
        std::thread device([this] {
            for (const char* burst : {"0123", "4567", "89"}) {
                EXPECT_TRUE(this->pty.write(burst));
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
        this->clock.start();
        EXPECT_EQ(this->read(10), "0123456789");
        EXPECT_LT(this->clock.elapsed(), 50000) << "waited further";
        device.join();

        const QByteArray data = mixed_bytes(3000);
        EXPECT_EQ(this->write(data), data.size());
        EXPECT_EQ(this->pty.read(data.size()), data);
        ASSERT_TRUE(this->pty.write(data));
        const QByteArray front = this->read(1000);
        EXPECT_EQ(front + this->read(2000), data);
    }
}

TYPED_TEST(NetworkLink, EndsAReadOneTimeoutAfterTheLastByte)
{
    this->bridge(this->socat(), 200);
    qint64 quickest = PATIENCE_MS; // of some attempts, as other programs may delay each of them
    for (int i = 0; i < 5; ++i) {
        this->arrive("wxyz");
        this->clock.start();
        EXPECT_EQ(this->read(10), "wxyz");
        EXPECT_GE(this->clock.elapsed(), 160);
        quickest = qMin(quickest, this->clock.elapsed());
    }
    EXPECT_LE(quickest, 240);
    EXPECT_EQ(this->link.getchar(), -5);
}

TYPED_TEST(NetworkLink, NeverHangsOnAPeerThatStopsReading)
{
    this->bridge(this->socat(), 100);
    const QByteArray megabyte(1 << 20, 'x');
    int result = megabyte.size();
    for (int i = 0; i < 16 && result == megabyte.size(); ++i) {
        this->clock.start();
        result = this->write(megabyte);
        EXPECT_LT(this->clock.elapsed(), PATIENCE_MS);
    }
    EXPECT_EQ(result == megabyte.size(), Traits<TypeParam>::WRITES_AT_ONCE);
    this->set(loopback(0, -1));
    this->clock.start();
    EXPECT_EQ(this->link.close(), 0);
    EXPECT_LT(this->clock.elapsed(), PATIENCE_MS);
}

TYPED_TEST(NetworkLink, LogsItsDataToTheLetter)
{
    auto& link = this->link;
    this->bridge(this->socat(), 20000);
    this->arrive("line\n");
    char line[10];
    EXPECT_EQ(link.readline(line, sizeof line), 5);
    EXPECT_STREQ(line, "line\n");
    (link.*Traits<TypeParam>::LOG_DATA)(true);
    EXPECT_EQ(this->write("hi"), 2);
    EXPECT_EQ(link.putchar('!'), '!');
    EXPECT_EQ(this->pty.read(3), "hi!");
    this->arrive(QByteArray("A\0\xFF\n", 4));
    EXPECT_EQ(this->read(3), QByteArray("A\0\xFF", 3));
    EXPECT_EQ(link.getchar(), '\n');
    this->arrive("xyz");
    link.flush();
    EXPECT_EQ(link.bytes_available(), 0);
    link.flush();
    EXPECT_EQ(this->read(0), "");
    link.close();
    EXPECT_EQ(lines(this->log), Traits<TypeParam>::DATA_LOG);
}

TYPED_TEST(NetworkLink, DeliversAllThatItHasTakenBeforeItCloses)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("received");
    const auto peer = NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", "SYSTEM:cat > " + file);
    this->set(loopback(peer->port(), PATIENCE_MS));
    ASSERT_EQ(this->link.open(), 0);
    const QByteArray data(1 << 24, 'x'); // more than the system's buffers hold
    EXPECT_EQ(this->write(data), data.size());
    EXPECT_EQ(this->link.close(), 0);
    EXPECT_TRUE(wait_until([&] { return QFileInfo(file).size() == data.size(); }));
}

// At each line in turn, as a view that gives up or reconnects would.
TEST(QLinkTcpip, MayBeClosedAndOpenedByAHandlerOfItsLog)
{
    const auto peer =
        NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1,fork", "SYSTEM:printf abc; sleep 0.02");
    const tcpip_cfg cfg = loopback(peer->port(), PATIENCE_MS);
    for (const auto meddle : {&QLinkTcpip::close, &QLinkTcpip::open}) {
        for (int at = 1, lines = at; lines >= at; ++at) {
            SCOPED_TRACE(at);
            QLinkTcpip link(&cfg);
            link.verbose_set(true);
            lines = 0;
            bool unconnected = false;
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
            if (lines < at)
                continue;
            EXPECT_EQ(link.open(), 0);
            EXPECT_EQ(link.read(buffer, sizeof buffer), 3);
        }
    }
}

// As in a tool's thread, which runs no event loop: a late answer must not pass for the next one.
TYPED_TEST(NetworkLink, DropsAllThatHasArrived)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    this->set(loopback(server.serverPort(), PATIENCE_MS));
    ASSERT_EQ(this->link.open(), 0);
    ASSERT_TRUE(server.waitForNewConnection(PATIENCE_MS));
    QTcpSocket* const peer = server.nextPendingConnection();
    peer->write("late");
    ASSERT_TRUE(peer->waitForBytesWritten(PATIENCE_MS));
    this->link.flush();
    peer->write("next");
    ASSERT_TRUE(peer->waitForBytesWritten(PATIENCE_MS));
    peer->close();
    EXPECT_EQ(this->read(10), "next");
}

using WinsockLink = NetworkLink<QLinkWinsock>;

TEST_F(WinsockLink, SendsToTheBroadcastAddress)
{
    QUdpSocket everyone;
    ASSERT_TRUE(everyone.bind(QHostAddress::AnyIPv4));
    tcpip_cfg cfg = loopback(everyone.localPort(), 5000, TCPIP_UDP);
    std::strcpy(cfg.addr, "255.255.255.255");
    set(cfg);
    ASSERT_EQ(link.open(), 0);
    EXPECT_EQ(write("no"), -1) << "went out without the broadcast option";

    cfg.protocol = TCPIP_UDP_BROADCAST;
    std::strcpy(cfg.addr, "not used");
    set(cfg);
    ASSERT_EQ(link.open(), 0);
    if (write("all") < 0 && errno == ENETUNREACH)
        GTEST_SKIP() << "no interface here takes broadcasts";
    ASSERT_TRUE(wait_until([&] { return everyone.hasPendingDatagrams(); }));
    EXPECT_EQ(everyone.receiveDatagram().data(), "all");
}

TEST_F(WinsockLink, SendsDatagramsForMostProtocolsAndDropsAllThatWait)
{
    QUdpSocket peer;
    ASSERT_TRUE(peer.bind(QHostAddress::LocalHost));
    QNetworkDatagram request;
    for (const int protocol : {2, 3, 5}) {
        set(loopback(peer.localPort(), 50, protocol));
        ASSERT_EQ(link.open(), 0);
        EXPECT_EQ(write("?"), 1);
        ASSERT_TRUE(wait_until([&] { return peer.hasPendingDatagrams(); }));
        request = peer.receiveDatagram();
        peer.writeDatagram(request.makeReply("stale"));
        peer.writeDatagram(request.makeReply("stale"));
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() > 0; }));
        link.flush();
        EXPECT_EQ(link.bytes_available(), 0);
    }
    clock.start();
    link.log_hex_set(true);
    QObject::connect(&link, &QLinkWinsock::log, [&] { // at each read, so without an end
        if (clock.elapsed() < PATIENCE_MS)
            peer.writeDatagram(request.makeReply("stale"));
    });
    peer.writeDatagram(request.makeReply("stale"));
    link.flush();
    EXPECT_LT(clock.elapsed(), PATIENCE_MS);
}

TEST_F(WinsockLink, LeavesNothingAfterAFailedOpen)
{
    tcpip_cfg cfg = loopback(0x3131, 100);
    std::memset(cfg.addr, '9', sizeof cfg.addr); // no NUL
    set(cfg);
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(lines(log),
              QStringList("tcpip: connect to host " + QString(63, '9') + ":12593 failed"));
    EXPECT_FALSE(link.is_open());
    set(loopback(1, -1, TCPIP_UDP));
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(lines(log), QStringList("tcpip: set socket sending timeout failed"));
    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    const rlimit none = {0, files.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(link.open(), -1);
    setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_EQ(lines(log), QStringList("tcpip: create socket failed"));
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(winsock::startups_in_use(), 0);
}

TEST_F(WinsockLink, LogsHexAndTextOfEachRead)
{
    bridge(socat(), 100);
    link.log_hex_set(true);
    link.log_text_set(true);
    arrive(QByteArray("full%2\0c", 8));
    EXPECT_EQ(read(4), "full");
    EXPECT_EQ(read(10), QByteArray("%2\0c", 4));
    EXPECT_EQ(read(0), "");
    EXPECT_EQ(lines(log),
              QStringList({"tcpip: read(4)[66 75 6C 6C]", "tcpip: read(-1)[25 32 00 63]",
                           "tcpip: read(-1)[%2]", "tcpip: read(0)[]"}));
    EXPECT_EQ(write(QByteArray("h%1\0!", 5)), 5);
    EXPECT_EQ(lines(log), QStringList({"tcpip: write   [68 25 31 00 21]", "tcpip: write   [h%1]"}));
}

// Signals arrive at a waiting read all the time, as from a profiler's timer.
TEST_F(WinsockLink, WaitsThroughSignalsOnAnotherThreadThanTheOneThatOpenedIt)
{
    QUdpSocket peer;
    ASSERT_TRUE(peer.bind(QHostAddress::LocalHost));
    set(loopback(peer.localPort(), 300, TCPIP_UDP));
    std::thread([&] { EXPECT_EQ(link.open(), 0); }).join();
    struct sigaction action = {};
    action.sa_handler = [](int) {}; // without SA_RESTART
    sigaction(SIGALRM, &action, nullptr);
    constexpr itimerval OFTEN = {{0, 5000}, {0, 5000}}, NEVER = {};
    setitimer(ITIMER_REAL, &OFTEN, nullptr);
    clock.start();
    EXPECT_EQ(read(1), "");
    EXPECT_GE(clock.elapsed(), 240);
    setitimer(ITIMER_REAL, &NEVER, nullptr);
}

} // namespace
