// Both network links against sockets, socat and ser2net on loopback.
#include "linklog.h"
#include "netpeer.h"
#include "networklink.h"
#include "portsettings.h"
#include "wait.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace {

using NetworkLinks = testing::Types<QLinkTcpip, QLinkWinsock>;

// A socket of the test's own on a loopback port that the system chose.
class BoundSocket
{
public:
    explicit BoundSocket(int type, in_addr_t address = htonl(INADDR_LOOPBACK))
        : fd(::socket(AF_INET, type, 0))
    {
        own.sin_family = AF_INET;
        own.sin_addr.s_addr = address;
        socklen_t size = sizeof own;
        EXPECT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&own), size), 0);
        EXPECT_EQ(::getsockname(fd, reinterpret_cast<sockaddr*>(&own), &size), 0);
    }
    ~BoundSocket() { ::close(fd); }

    int port() const { return ntohs(own.sin_port); }

    const int fd;
    sockaddr_in own = {};
};

template <typename Link> class NetworkLink : public testing::Test
{
public:
    ~NetworkLink() override { EXPECT_EQ(winsock::startups_in_use(), 0); }
};
TYPED_TEST_SUITE(NetworkLink, NetworkLinks);

TYPED_TEST(NetworkLink, AnswersByTheTableWhileClosed)
{
    TypeParam link(nullptr);
    LinkLog log(&link);
    char buffer[4] = "###";
    link.flush();
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(link.bytes_available(), -6);
    EXPECT_EQ(link.getchar(), -6);
    EXPECT_EQ(link.putchar('x'), -6);
    EXPECT_EQ(link.read(buffer, 3), -6);
    EXPECT_FALSE(link.can_read_line());
    EXPECT_EQ(log.take(), QStringList());
    EXPECT_EQ(link.write("x", 1), -6);
    EXPECT_EQ(link.readline(buffer, sizeof buffer), Traits<TypeParam>::CLOSED_READLINE);
    EXPECT_EQ(log.take(), Traits<TypeParam>::CLOSED_LOG);
    EXPECT_EQ(link.close(), 0);
    EXPECT_EQ(link.close(), 0);
    EXPECT_EQ(link.qt_metacast("QLink"), static_cast<QLink*>(&link));
}

TYPED_TEST(NetworkLink, RefusesProtocolsThatItDoesNotHave)
{
    for (const int protocol : Traits<TypeParam>::REFUSED_PROTOCOLS) {
        const tcpip_cfg cfg = loopback(1, 100, protocol);
        TypeParam link(&cfg);
        LinkLog log(&link);
        EXPECT_EQ(link.open(), -1) << protocol;
        EXPECT_FALSE(link.is_open());
        EXPECT_EQ(log.take(), QStringList("tcpip: protocol not supported"));
    }
}

TYPED_TEST(NetworkLink, OpensAfterARefusalAndAnewWhenOpen)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const tcpip_cfg good = loopback(server.serverPort(), 20000);
    const BoundSocket deaf(SOCK_STREAM); // bound, so that nobody else can listen there
    const tcpip_cfg bad = loopback(deaf.port(), 20000);

    TypeParam link(&bad);
    LinkLog log(&link);
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(log.take(), QStringList(Traits<TypeParam>::REFUSED_LOG)
                              .replaceInStrings("%1", QString::number(bad.remote_port)));
    link.settings_set(&good);
    EXPECT_EQ(link.open(), 0);
    EXPECT_TRUE(link.is_open());
    ASSERT_TRUE(wait_until([&] { return server.hasPendingConnections(); }));
    QTcpSocket* const first = server.nextPendingConnection();

    link.settings_set(&bad); // leaves the connection alone
    EXPECT_EQ(link.write("1", 1), 1);
    EXPECT_TRUE(wait_until([&] { return first->bytesAvailable() == 1; }));
    link.settings_set(&good);
    EXPECT_EQ(link.open(), 0);
    EXPECT_TRUE(wait_until([&] { return first->state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_TRUE(wait_until([&] { return server.hasPendingConnections(); }));
}

TYPED_TEST(NetworkLink, GivesUpOnAPeerThatNeverAccepts)
{
    BoundSocket listener(SOCK_STREAM);
    ASSERT_EQ(::listen(listener.fd, 0), 0);
    // Fill the queue; the system leaves further ones without an answer.
    std::vector<std::unique_ptr<QTcpSocket>> queue;
    do {
        queue.push_back(std::make_unique<QTcpSocket>());
        queue.back()->connectToHost(QHostAddress::LocalHost, quint16(listener.port()));
    } while (queue.back()->waitForConnected(200));

    const tcpip_cfg cfg = loopback(listener.port(), 300);
    TypeParam link(&cfg);
    LinkLog log(&link);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(link.open(), -1);
    EXPECT_GE(clock.elapsed(), 240);
    EXPECT_LT(clock.elapsed(), PATIENCE_MS);
    EXPECT_TRUE(log.take().last().endsWith("failed"));
    EXPECT_EQ(link.close(), 0);
}

TYPED_TEST(NetworkLink, GivesWhatCameBeforeThePeerClosed)
{
    std::signal(SIGPIPE, SIG_DFL); // would end this program
    const auto peer = NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", "SYSTEM:printf abc");
    const tcpip_cfg cfg = loopback(peer->port(), 60000);
    TypeParam link(&cfg);
    ASSERT_EQ(link.open(), 0);
    char buffer[10];
    QElapsedTimer clock;
    clock.start();
    ASSERT_EQ(link.read(buffer, sizeof buffer), 3);
    EXPECT_EQ(QByteArray(buffer, 3), "abc");
    EXPECT_EQ(link.read(buffer, sizeof buffer), 0);
    EXPECT_LT(clock.elapsed(), 50000) << "waited for a peer that has gone";
    EXPECT_TRUE(link.is_open());
    EXPECT_TRUE(wait_until([&] { return link.write("x", 1) < 0; }));
    EXPECT_EQ(link.putchar('x'), -5);
}

TEST(QLinkTcpip, DeliversWhatItHasTakenBeforeItCloses)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("received");
    const auto peer = NetPeer::socat("TCP-LISTEN:0,bind=127.0.0.1", "SYSTEM:cat > " + file);
    const tcpip_cfg cfg = loopback(peer->port(), PATIENCE_MS);
    QLinkTcpip link(&cfg);
    ASSERT_EQ(link.open(), 0);
    const QByteArray data(1 << 24, 'x'); // more than the system's buffers hold
    EXPECT_EQ(link.write(data.constData(), data.size()), data.size());
    EXPECT_EQ(link.close(), 0);
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
    const BoundSocket server(SOCK_STREAM);
    ASSERT_EQ(::listen(server.fd, 1), 0);
    const tcpip_cfg cfg = loopback(server.port(), PATIENCE_MS);
    TypeParam link(&cfg);
    ASSERT_EQ(link.open(), 0);
    const int peer = ::accept(server.fd, nullptr, nullptr);
    ASSERT_EQ(::send(peer, "late", 4, 0), 4);
    link.flush();
    ASSERT_EQ(::send(peer, "next", 4, 0), 4);
    ::close(peer);
    char buffer[10];
    EXPECT_EQ(link.read(buffer, sizeof buffer), 4);
    EXPECT_EQ(QByteArray(buffer, 4), "next");
}

TYPED_TEST(NetworkLink, SpeaksUdpBothWays)
{
    const auto echo = NetPeer::socat("UDP-LISTEN:0,bind=127.0.0.1", "PIPE");
    const tcpip_cfg cfg = loopback(echo->port(), 20000, TCPIP_UDP);
    TypeParam link(&cfg);
    ASSERT_EQ(link.open(), 0);
    char buffer[100];
    for (const QByteArray& datagram : {QByteArray("ping"), mixed_bytes(100)}) {
        ASSERT_EQ(link.write(datagram.constData(), datagram.size()), datagram.size());
        ASSERT_EQ(link.read(buffer, datagram.size()), datagram.size());
        EXPECT_EQ(QByteArray(buffer, datagram.size()), datagram);
    }
}

template <typename LinkType, typename PeerType> struct Over
{
    using Link = LinkType;
    using Peer = PeerType;
};

// A link through another program to the test's pseudo-terminal.
template <typename Case> class BridgedLink : public testing::Test
{
public:
    using Link = typename Case::Link;

    // Opens the link and waits until bytes pass.
    void start(int timeout_ms)
    {
        const tcpip_cfg cfg = loopback(peer.program->port(), timeout_ms);
        link.settings_set(&cfg);
        ASSERT_TRUE(wait_until([&] { return link.open() == 0; }));
        ASSERT_EQ(link.write("go", 2), 2);
        ASSERT_EQ(peer.pty.read(2), "go");
        log.take();
    }

    // Sends from the far side, and waits until the link has it.
    void arrive(const QByteArray& bytes)
    {
        ASSERT_TRUE(peer.pty.write(bytes));
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() == bytes.size(); }));
    }

    QByteArray read(int count)
    {
        QByteArray bytes(count, '#');
        bytes.resize(qMax(0, link.read(bytes.data(), count)));
        return bytes;
    }

    typename Case::Peer peer;
    Link link{nullptr};
    LinkLog log{&link};
};
using Bridges = testing::Types<Over<QLinkTcpip, SocatPeer>, Over<QLinkWinsock, SocatPeer>,
                               Over<QLinkTcpip, Ser2netPeer>, Over<QLinkWinsock, Ser2netPeer>>;
TYPED_TEST_SUITE(BridgedLink, Bridges);

TYPED_TEST(BridgedLink, ReadsBurstsInOrderWithoutAFurtherWait)
{
    this->start(60000);
    std::thread device([this] {
        for (const char* burst : {"0123", "4567", "89"}) {
            ASSERT_GT(::write(this->peer.pty.master_fd(), burst, strlen(burst)), 0);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    });
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(this->read(10), "0123456789");
    EXPECT_LT(clock.elapsed(), 50000);
    device.join();

    const QByteArray data = mixed_bytes(3000);
    EXPECT_EQ(this->link.write(data.constData(), data.size()), data.size());
    EXPECT_EQ(this->peer.pty.read(data.size()), data);
    ASSERT_TRUE(this->peer.pty.write(data));
    const QByteArray front = this->read(1000);
    EXPECT_EQ(front + this->read(2000), data);
}

TYPED_TEST(BridgedLink, EndsAReadOneTimeoutBehindTheLastByte)
{
    this->start(200);
    qint64 quickest = PATIENCE_MS; // of some attempts, as other programs may delay each of them
    for (int i = 0; i < 5; ++i) {
        this->arrive("wxyz");
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(this->read(10), "wxyz");
        EXPECT_GE(clock.elapsed(), 160);
        quickest = std::min(quickest, clock.elapsed());
    }
    EXPECT_LE(quickest, 240);
    EXPECT_EQ(this->link.getchar(), -5);
}

TYPED_TEST(BridgedLink, NeverHangsOnAPeerThatStopsReading)
{
    this->start(100);
    const QByteArray megabyte(1 << 20, 'x');
    int result = megabyte.size();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 16 && result == megabyte.size(); ++i) {
        clock.restart();
        result = this->link.write(megabyte.constData(), megabyte.size());
        EXPECT_LT(clock.elapsed(), PATIENCE_MS);
    }
    using Link = typename TypeParam::Link;
    EXPECT_EQ(result == megabyte.size(), Traits<Link>::WRITES_AT_ONCE);
    const tcpip_cfg endless = loopback(0, -1);
    this->link.settings_set(&endless);
    clock.restart();
    EXPECT_EQ(this->link.close(), 0);
    EXPECT_LT(clock.elapsed(), PATIENCE_MS);
}

TYPED_TEST(BridgedLink, LogsItsDataToTheLetter)
{
    using Log = Traits<typename TypeParam::Link>;
    this->start(20000);
    Log::log_data(this->link);
    EXPECT_EQ(this->link.write("hi", 2), 2);
    EXPECT_EQ(this->link.putchar('!'), '!');
    this->arrive(QByteArray("A\0\xFF\n", 4));
    EXPECT_EQ(this->read(3), QByteArray("A\0\xFF", 3));
    EXPECT_EQ(this->link.getchar(), '\n');
    this->arrive("xyz");
    this->link.flush();
    EXPECT_EQ(this->link.bytes_available(), 0);
    this->link.flush();
    EXPECT_EQ(this->read(0), "");
    EXPECT_EQ(this->log.take(), Log::DATA_LOG);

    this->arrive("line\nrest");
    char line[10];
    EXPECT_EQ(this->link.readline(line, sizeof line), 5);
    EXPECT_STREQ(line, "line\n");
    this->log.take();
    this->link.close();
    EXPECT_EQ(this->log.take(), Log::CLOSE_LOG);
    EXPECT_EQ(this->peer.pty.read(3), "hi!");
}

TEST(QLinkWinsock, SendsToTheBroadcastAddress)
{
    BoundSocket everyone(SOCK_DGRAM, htonl(INADDR_ANY));
    tcpip_cfg cfg = loopback(everyone.port(), 5000, TCPIP_UDP);
    std::strcpy(cfg.addr, "255.255.255.255");
    QLinkWinsock link(&cfg);
    ASSERT_EQ(link.open(), 0);
    EXPECT_EQ(link.write("no", 2), -1) << "went out without the broadcast option";

    cfg.protocol = TCPIP_UDP_BROADCAST;
    std::strcpy(cfg.addr, "not used");
    link.settings_set(&cfg);
    ASSERT_EQ(link.open(), 0);
    if (link.write("all", 3) < 0 && errno == ENETUNREACH)
        GTEST_SKIP() << "no interface here takes broadcasts";
    char buffer[10];
    ASSERT_TRUE(
        wait_until([&] { return ::recv(everyone.fd, buffer, sizeof buffer, MSG_DONTWAIT) == 3; }));
    EXPECT_EQ(QByteArray(buffer, 3), "all");
}

TEST(QLinkWinsock, SendsDatagramsForMostProtocolsAndDropsAllThatWait)
{
    for (const int protocol : {2, 3, 5}) {
        BoundSocket peer(SOCK_DGRAM);
        const tcpip_cfg cfg = loopback(peer.port(), 100, protocol);
        QLinkWinsock link(&cfg);
        ASSERT_EQ(link.open(), 0);
        ASSERT_EQ(link.write("?", 1), 1);
        char byte;
        sockaddr_in from;
        socklen_t size = sizeof from;
        ASSERT_EQ(::recvfrom(peer.fd, &byte, 1, 0, reinterpret_cast<sockaddr*>(&from), &size), 1);
        for (int i = 0; i < 2; ++i)
            ASSERT_EQ(::sendto(peer.fd, "stale", 5, 0, reinterpret_cast<sockaddr*>(&from), size),
                      5);
        ASSERT_TRUE(wait_until([&] { return link.bytes_available() > 0; }));
        link.flush();
        EXPECT_EQ(link.bytes_available(), 0);
    }
}

TEST(QLinkWinsock, EndsAFlushThoughDatagramsComeAsFastAsTheyAreDropped)
{
    BoundSocket peer(SOCK_DGRAM);
    const tcpip_cfg cfg = loopback(peer.port(), 50, TCPIP_UDP);
    QLinkWinsock link(&cfg);
    ASSERT_EQ(link.open(), 0);
    ASSERT_EQ(link.write("?", 1), 1);
    char byte;
    sockaddr_in from;
    socklen_t size = sizeof from;
    ASSERT_EQ(::recvfrom(peer.fd, &byte, 1, 0, reinterpret_cast<sockaddr*>(&from), &size), 1);
    QElapsedTimer clock;
    clock.start();
    const auto send_one = [&] {
        if (clock.elapsed() < PATIENCE_MS)
            ::sendto(peer.fd, "stale", 5, 0, reinterpret_cast<sockaddr*>(&from), size);
    };
    send_one();
    ASSERT_TRUE(wait_until([&] { return link.bytes_available() > 0; }));
    link.log_hex_set(true);
    QObject::connect(&link, &QLinkWinsock::log, send_one); // at each read
    link.flush();
    EXPECT_LT(clock.elapsed(), PATIENCE_MS);
}

TEST(QLinkWinsock, EndsTheAddressInsideItsField)
{
    tcpip_cfg cfg = loopback(0x3131, 100);
    std::memset(cfg.addr, '9', sizeof cfg.addr);
    QLinkWinsock link(&cfg);
    LinkLog log(&link);
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(log.take(),
              QStringList("tcpip: connect to host " + QString(63, '9') + ":12593 failed"));
}

TEST(QLinkWinsock, LeavesNothingBehindAFailedOpen)
{
    const tcpip_cfg cfg = loopback(1, -1, TCPIP_UDP);
    QLinkWinsock link(&cfg);
    LinkLog log(&link);
    EXPECT_EQ(link.open(), -1);
    EXPECT_EQ(log.take(), QStringList("tcpip: set socket sending timeout failed"));

    rlimit files = {};
    getrlimit(RLIMIT_NOFILE, &files);
    const rlimit none = {0, files.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(link.open(), -1);
    setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_EQ(log.take(), QStringList("tcpip: create socket failed"));
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(winsock::startups_in_use(), 0);
}

TEST(QLinkWinsock, LogsHexAndTextOfEachRead)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const tcpip_cfg cfg = loopback(server.serverPort(), 100);
    QLinkWinsock link(&cfg);
    LinkLog log(&link);
    link.log_hex_set(true);
    link.log_text_set(true);
    ASSERT_EQ(link.open(), 0);
    ASSERT_TRUE(wait_until([&] { return server.hasPendingConnections(); }));
    QTcpSocket* const peer = server.nextPendingConnection();
    peer->write("full%2\0c", 8);
    ASSERT_TRUE(wait_until([&] { return link.bytes_available() == 8; }));
    char buffer[10];
    EXPECT_EQ(link.read(buffer, 4), 4);
    EXPECT_EQ(link.read(buffer, 10), 4);
    EXPECT_EQ(link.read(buffer, 0), 0);
    EXPECT_EQ(log.take(),
              QStringList({"tcpip: read(4)[66 75 6C 6C]", "tcpip: read(-1)[25 32 00 63]",
                           "tcpip: read(-1)[%2]", "tcpip: read(0)[]"}));
    EXPECT_EQ(link.write("h%1\0!", 5), 5);
    ASSERT_TRUE(wait_until([&] { return peer->bytesAvailable() == 5; }));
    peer->close();
    EXPECT_EQ(link.read(buffer, 10), 0);
    EXPECT_EQ(log.take(), QStringList({"tcpip: write   [68 25 31 00 21]", "tcpip: write   [h%1]",
                                       "tcpip: read(0)[]", "tcpip: read(0)[]"}));
}

// Signals arrive at a waiting read all the time, as from a profiler's timer.
TEST(QLinkWinsock, WaitsThroughSignalsOnAnotherThreadThanTheOneThatOpenedIt)
{
    const BoundSocket peer(SOCK_DGRAM);
    const tcpip_cfg cfg = loopback(peer.port(), 300, TCPIP_UDP);
    QLinkWinsock link(&cfg);
    std::thread([&] { EXPECT_EQ(link.open(), 0); }).join();
    struct sigaction action = {};
    action.sa_handler = [](int) {}; // without SA_RESTART
    sigaction(SIGALRM, &action, nullptr);
    constexpr itimerval OFTEN = {{0, 5000}, {0, 5000}}, NEVER = {};
    setitimer(ITIMER_REAL, &OFTEN, nullptr);
    QElapsedTimer clock;
    clock.start();
    char byte;
    EXPECT_EQ(link.read(&byte, 1), 0);
    EXPECT_GE(clock.elapsed(), 240);
    setitimer(ITIMER_REAL, &NEVER, nullptr);
}

} // namespace
