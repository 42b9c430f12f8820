// QLinkWinsock over a scripted socket layer: which calls it makes, and what it does when one fails.
#include "linklog.h"
#include "print.h"
#include "qlinkwinsock.h"

#include <QByteArrayList>
#include <cstring>
#include <deque>
#include <gtest/gtest.h>

namespace {

// The state of the scripted layer; each test begins with a new one.
struct Script
{
    QByteArray failing; // the call that fails, named as in `calls`
    QByteArrayList calls;
    int startups = 0;
    int handles = 0;
    sockaddr_in peer = {};
    std::deque<QByteArray> arrivals; // a recv each; then time-outs
} script;

constexpr SOCKET HANDLE = 5;
constexpr int STARTUP_ERROR = 10091;

// Notes the call; false when it is to fail.
bool called(const QByteArray& name)
{
    script.calls += name;
    return name != script.failing;
}

int take_arrival(const QByteArray& name, char* buffer, int size)
{
    if (!called(name) || script.arrivals.empty())
        return SOCKET_ERROR;
    const QByteArray bytes = script.arrivals.front().left(size);
    script.arrivals.pop_front();
    std::copy(bytes.begin(), bytes.end(), buffer);
    return bytes.size();
}

} // namespace

namespace winsock {

int WSAStartup(uint16_t version, WSADATA*)
{
    EXPECT_EQ(version, 0x0202);
    if (!called("WSAStartup"))
        return STARTUP_ERROR;
    ++script.startups;
    return 0;
}

int WSACleanup()
{
    --script.startups;
    return 0;
}

SOCKET socket(int family, int type, int)
{
    EXPECT_EQ(family, AF_INET);
    if (!called(type == SOCK_STREAM ? "socket stream" : "socket datagram"))
        return INVALID_SOCKET;
    ++script.handles;
    return HANDLE;
}

int setsockopt(SOCKET, int level, int option, const char* value, int size)
{
    EXPECT_EQ(level, SOL_SOCKET);
    EXPECT_EQ(size, 4);
    const QByteArray name = option == SO_SNDTIMEO   ? "SO_SNDTIMEO"
                            : option == SO_RCVTIMEO ? "SO_RCVTIMEO"
                                                    : "SO_BROADCAST";
    EXPECT_EQ(*reinterpret_cast<const int*>(value), option == SO_BROADCAST ? 1 : 500);
    return called(name) ? 0 : SOCKET_ERROR;
}

uint16_t htons(uint16_t port)
{
    return ::htons(port);
}

uint32_t inet_addr(const char* dotted)
{
    return QByteArray(dotted) == "192.168.0.1" ? 0x0100A8C0 : INADDR_NONE;
}

int connect(SOCKET, const sockaddr* peer, int size)
{
    EXPECT_EQ(size, 16);
    script.peer = *reinterpret_cast<const sockaddr_in*>(peer);
    return called("connect") ? 0 : SOCKET_ERROR;
}

int closesocket(SOCKET s)
{
    EXPECT_EQ(s, HANDLE);
    --script.handles;
    return 0;
}

int ioctlsocket(SOCKET, unsigned long, unsigned long* result)
{
    *result = script.arrivals.empty() ? 0 : ulong(script.arrivals.front().size());
    return 0;
}

int recv(SOCKET, char* buffer, int size, int)
{
    return take_arrival("recv", buffer, size);
}

int recvfrom(SOCKET, char* buffer, int size, int, sockaddr* from, int* from_size)
{
    EXPECT_TRUE(!from && !from_size);
    return take_arrival("recvfrom", buffer, size);
}

int send(SOCKET, const char*, int size, int)
{
    return called("send") ? size : SOCKET_ERROR;
}

int sendto(SOCKET, const char*, int size, int, const sockaddr* to, int to_size)
{
    EXPECT_EQ(to_size, 16);
    script.peer = *reinterpret_cast<const sockaddr_in*>(to);
    return called("sendto") ? size : SOCKET_ERROR;
}

} // namespace winsock

namespace {

struct OpenFailure
{
    int protocol;
    const char* failing;
    int result;
    const char* line;
};

class WinsockOpen : public testing::TestWithParam<OpenFailure>
{
};

TEST_P(WinsockOpen, LeavesNothingBehindAFailure)
{
    script = {};
    script.failing = GetParam().failing;
    tcpip_cfg cfg = tcpip_defaults();
    cfg.protocol = GetParam().protocol;
    QLinkWinsock link(&cfg);
    LinkLog log(&link);
    EXPECT_EQ(link.open(), GetParam().result);
    EXPECT_EQ(log.take(), QStringList(GetParam().line));
    EXPECT_FALSE(link.is_open());
    EXPECT_EQ(script.startups, 0);
    EXPECT_EQ(script.handles, 0);
    EXPECT_EQ(script.calls.last(), script.failing);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, WinsockOpen,
    testing::Values(OpenFailure{0, "WSAStartup", STARTUP_ERROR, "winsock: WSAStartup failed"},
                    OpenFailure{0, "socket stream", -1, "tcpip: create socket failed"},
                    OpenFailure{0, "SO_SNDTIMEO", -1, "tcpip: set socket sending timeout failed"},
                    OpenFailure{2, "SO_RCVTIMEO", -1, "tcpip: set socket receiving timeout failed"},
                    OpenFailure{4, "SO_BROADCAST", -1, "tcpip: set socket broadcast opt failed"},
                    OpenFailure{0, "connect", -1,
                                "tcpip: connect to host 192.168.0.1:4001 failed"}));

struct SendCase
{
    int protocol;
    const char* addr;
    const char* socket_call;
    const char* send_call;
    uint32_t peer; // network byte order
};

TEST(QLinkWinsock, ChoosesSocketAndPeerByProtocol)
{
    const SendCase cases[] = {
        {0, "192.168.0.1", "socket stream", "send", 0x0100A8C0},
        {2, "192.168.0.1", "socket datagram", "sendto", 0x0100A8C0},
        {3, "192.168.0.1", "socket datagram", "sendto", 0x0100A8C0},
        {4, "192.168.0.1", "socket datagram", "sendto", INADDR_BROADCAST},
        {9, "192.168.0.1", "socket datagram", "sendto", 0x0100A8C0},
        {2, "no address", "socket datagram", "sendto", INADDR_NONE},
    };
    for (const SendCase& c : cases) {
        script = {};
        tcpip_cfg cfg = tcpip_defaults();
        cfg.protocol = c.protocol;
        std::strcpy(cfg.addr, c.addr);
        cfg.remote_port = 0x10000 + 4001;
        QLinkWinsock link(&cfg);
        ASSERT_EQ(link.open(), 0);
        EXPECT_EQ(link.write("abc", 3), 3);
        EXPECT_TRUE(script.calls.contains(c.socket_call)) << c.protocol;
        EXPECT_EQ(script.calls.last(), c.send_call);
        EXPECT_EQ(script.calls.contains("connect"), c.protocol == 0);
        EXPECT_EQ(script.calls.contains("SO_BROADCAST"), c.protocol == 4);
        EXPECT_EQ(script.peer.sin_addr.s_addr, c.peer) << c.protocol;
        EXPECT_EQ(script.peer.sin_port, htons(4001));
        script.failing = c.send_call;
        EXPECT_EQ(link.write("abc", 3), -1);
        EXPECT_EQ(link.putchar('x'), -5);
        EXPECT_EQ(link.open(), 0); // anew
        EXPECT_EQ(script.startups, 1);
        link.close();
        link.close();
        EXPECT_EQ(script.startups, 0);
        EXPECT_EQ(script.handles, 0);
    }
}

TEST(QLinkWinsock, LogsHexAndTextOfEachRead)
{
    script = {};
    QLinkWinsock link(nullptr);
    LinkLog log(&link);
    ASSERT_EQ(link.open(), 0);
    link.log_hex_set(true);
    link.log_text_set(true);
    char buffer[10];

    script.arrivals = {"a", "b%2"};
    EXPECT_EQ(link.read(buffer, 10), 4);
    EXPECT_EQ(log.take(), QStringList({"tcpip: read(-1)[61 62 25 32]", "tcpip: read(-1)[ab%2]"}));
    script.arrivals = {"abc", ""}; // the peer's end
    EXPECT_EQ(link.read(buffer, 10), 3);
    EXPECT_EQ(log.take(), QStringList({"tcpip: read(0)[61 62 63]", "tcpip: read(0)[abc]"}));
    script.arrivals = {"full"};
    EXPECT_EQ(link.read(buffer, 4), 4);
    EXPECT_EQ(log.take(), QStringList("tcpip: read(4)[66 75 6C 6C]"));
    EXPECT_EQ(link.write("hi\0!", 4), 4);
    EXPECT_EQ(log.take(), QStringList({"tcpip: write   [68 69 00 21]", "tcpip: write   [hi]"}));

    script.calls.clear();
    EXPECT_EQ(link.read(buffer, 0), 0);
    EXPECT_EQ(script.calls, QByteArrayList());
    EXPECT_EQ(log.take(), QStringList("tcpip: read(0)[]"));
}

TEST(QLinkWinsock, EndsALineAtTheFirstTimeout)
{
    script = {};
    QLinkWinsock link(nullptr);
    ASSERT_EQ(link.open(), 0);
    script.arrivals = {"o", "k"};
    char line[10];
    EXPECT_EQ(link.readline(line, sizeof line), 2);
    EXPECT_STREQ(line, "ok");
    EXPECT_EQ(script.calls.count("recv"), 3);
    EXPECT_EQ(link.getchar(), -5);
    EXPECT_FALSE(link.can_read_line());
}

} // namespace
