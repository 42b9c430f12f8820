#include "netpeer.h"

#include "wait.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
constexpr int FIRST_PORT = 20000, PORTS = 10000;
} // namespace

std::unique_ptr<NetPeer> NetPeer::socat(const QString& listen, const QString& other)
{
    auto peer = std::make_unique<NetPeer>();
    peer->process.start("socat", {"-d", "-d", listen, other});
    const QRegularExpression report("listening on .*:(\\d+)\n");
    QString output;
    EXPECT_TRUE(wait_until([&] {
        output += QString::fromLocal8Bit(peer->process.readAllStandardError());
        peer->tcp_port = report.match(output).captured(1).toInt();
        return peer->tcp_port != 0;
    })) << qPrintable(output);
    return peer;
}

std::unique_ptr<NetPeer> NetPeer::ser2net(const QString& device)
{
    auto peer = std::make_unique<NetPeer>();
    // It can't report its port, so it gets a free one below those that the system hands out, where
    // test programs that run at the same time begin to look in different places.
    peer->tcp_port = FIRST_PORT + getpid() % PORTS;
    while (!QTcpServer().listen(QHostAddress::LocalHost, peer->tcp_port))
        ++peer->tcp_port;
    const QString served = "connection: &port#  accepter: tcp,127.0.0.1,%1#"
                           "  connector: serialdev,%2,115200n81,local#";
    peer->process.start("/usr/sbin/ser2net",
                        {"-n", "-u", "-Y", served.arg(peer->tcp_port).arg(device)});
    EXPECT_TRUE(peer->process.waitForStarted());
    return peer;
}

NetPeer::~NetPeer()
{
    process.kill();
    process.waitForFinished();
}
