// echo and talk, and the life of their port.
#include "simulated.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <csignal>
#include <gtest/gtest.h>
#include <poll.h>

namespace {
// Sends all of `data` while reading what comes back, as a terminal program would.
QByteArray echoed(Wire& wire, const QByteArray& data)
{
    QByteArray back;
    for (int sent = 0; back.size() < data.size();) {
        pollfd ready = {wire.fd, short(POLLIN | (sent < data.size() ? POLLOUT : 0)), 0};
        if (::poll(&ready, 1, PATIENCE_MS) <= 0)
            break;
        sent += wire.write_some(data.mid(sent, 5000));
        back += wire.read_some();
    }
    return back;
}

long resident_kilobytes(qint64 pid)
{
    QFile status(QString("/proc/%1/statm").arg(pid));
    return status.open(QIODevice::ReadOnly) ? status.readAll().split(' ').value(1).toLong() * 4
                                            : -1;
}

double cpu_seconds(qint64 pid)
{
    QFile stat(QString("/proc/%1/stat").arg(pid));
    const QList<QByteArray> fields =
        stat.open(QIODevice::ReadOnly) ? stat.readAll().split(' ') : QList<QByteArray>();
    return (fields.value(13).toDouble() + fields.value(14).toDouble()) / sysconf(_SC_CLK_TCK);
}

class Streams : public testing::Test
{
protected:
    Sandbox sandbox;
};

TEST_F(Streams, EchoGivesBackEveryByteOfAMegabyte)
{
    const QByteArray data = random_bytes(1'000'000, 1);
    for (const QStringList& arguments :
         {QStringList{"echo"}, QStringList{"echo", "--listen", "0"}}) {
        Simulated echo(arguments);
        Wire wire(echo.address);
        EXPECT_EQ(echoed(wire, data), data) << qPrintable(echo.address);
    }
}

TEST_F(Streams, EchoHoldsTheHostBackInsteadOfGrowing)
{
    Simulated echo({"echo"});
    Wire wire(echo.address);
    const QByteArray data = random_bytes(1'000'000, 2);
    int sent = 0;
    // Nobody reads: the host is stopped well before a megabyte.
    for (int more = 1; more > 0;) {
        more = wire.write_some(data.mid(sent));
        sent += more;
        pollfd ready = {wire.fd, POLLOUT, 0};
        ::poll(&ready, 1, 300);
    }
    EXPECT_LT(sent, 300'000);
    EXPECT_EQ(wire.read(sent), data.left(sent));
}

TEST_F(Streams, ThePortIsRawAndPrivateAndEndsWithTheSimulator)
{
    for (int signal : {SIGTERM, SIGINT}) {
        Simulated echo({"echo"});
        EXPECT_EQ(echo.address, sandbox.ports_folder() + "/echo");
        EXPECT_TRUE(QFileInfo(echo.address).isSymLink());
        ::kill(pid_t(echo.process.processId()), signal);
        EXPECT_EQ(echo.wait_for_exit(), 0);
        EXPECT_FALSE(QFileInfo(echo.address).isSymLink());
    }
    QDir(sandbox.ports_folder()).removeRecursively();
    Simulated again({"echo", "--name", "bench"});
    EXPECT_EQ(again.address, sandbox.ports_folder() + "/bench");
    EXPECT_EQ(QFile::permissions(sandbox.ports_folder()) & 0x0FF, QFile::Permissions());
}

TEST_F(Streams, AStaleLinkIsReplacedAndALivingOneRefused)
{
    QFile::link("/dev/pts/99999", sandbox.ports_folder() + "/echo");
    Simulated first({"echo"});
    Wire wire(first.address);
    EXPECT_EQ(wire.exchange("abc", 3), "abc");

    Simulated second({"echo"});
    EXPECT_EQ(second.wait_for_exit(), 1);
    EXPECT_TRUE(second.process.readAllStandardError().contains("--name"));
    EXPECT_EQ(wire.exchange("still there", 11), "still there");
    first.process.kill();
    first.process.waitForFinished();
    Simulated third({"echo"});
    EXPECT_EQ(Wire(third.address).exchange("abc", 3), "abc");
}

TEST_F(Streams, AProgramMayCloseThePortAndOpenItAgain)
{
    Simulated echo({"echo"});
    for (int i = 0; i < 5; ++i) {
        Wire wire(echo.address);
        EXPECT_EQ(wire.exchange("\r\n\x03 raw", 7), "\r\n\x03 raw");
    }
    // What somebody left behind is gone, like bytes sent to an unplugged line.
    Wire(echo.address).write_some("not waited for");
    QTest::qWait(200);
    EXPECT_EQ(Wire(echo.address).read(1, 100), "");
}

TEST_F(Streams, TalksTheSameNumberedLinesForTheSameSeed)
{
    QByteArray heard[2];
    for (QByteArray& text : heard) {
        Simulated talk({"talk", "--rate", "0", "--line-length", "40", "--bytes", "100000"});
        Wire wire(talk.address);
        text = wire.read(100'000);
    }
    EXPECT_EQ(heard[0], heard[1]);
    const QList<QByteArray> lines = heard[0].split('\n');
    ASSERT_EQ(lines.size(), 2501);
    for (int i = 0; i < 2500; ++i) {
        ASSERT_EQ(lines[i].size(), 39) << i;
        ASSERT_EQ(lines[i].left(9).toInt(), i + 1);
        ASSERT_TRUE(lines[i].endsWith('\r'));
    }
}

TEST_F(Streams, TalksAtItsRateAndWaitsForAListener)
{
    Simulated talk({"talk", "--binary", "--rate", "20000", "--seed", "7"});
    QTest::qWait(300);
    Wire wire(talk.address);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(wire.read(10'000).size(), 10'000);
    EXPECT_GE(clock.elapsed(), 450);
    EXPECT_LT(clock.elapsed(), 2'000);
}

TEST_F(Streams, AListenerThatNeverReadsCostsNeitherMemoryNorTime)
{
    Simulated talk({"talk", "--binary", "--rate", "0"});
    Wire wire(talk.address);
    pollfd ready = {wire.fd, POLLIN, 0};
    ASSERT_EQ(::poll(&ready, 1, PATIENCE_MS), 1);
    QTest::qWait(100);
    const qint64 pid = talk.process.processId();
    const long memory = resident_kilobytes(pid);
    const double cpu = cpu_seconds(pid);
    QTest::qWait(700);
    EXPECT_LE(resident_kilobytes(pid), memory + 256);
    EXPECT_LT(cpu_seconds(pid) - cpu, 0.1);
}

TEST_F(Streams, ALineOfAGivenRateTakesItsTime)
{
    Simulated echo({"echo", "--baud", "115200"});
    Wire wire(echo.address);
    QElapsedTimer clock;
    clock.start();
    const QByteArray data = random_bytes(11'520, 3);
    EXPECT_EQ(echoed(wire, data), data);
    EXPECT_GE(clock.elapsed(), 990);
}

TEST_F(Streams, FaultsAreTheSameForTheSameSeed)
{
    const QByteArray data = random_bytes(20'000, 4);
    QByteArray heard[3];
    const char* const seeds[] = {"5", "5", "6"};
    for (int i = 0; i < 3; ++i) {
        Simulated echo({"echo", "--drop", "0.01", "--corrupt", "0.01", "--silent-after", "15000",
                        "--seed", seeds[i]});
        Wire wire(echo.address);
        for (int sent = 0; sent < data.size(); sent += 4000) {
            wire.write_some(data.mid(sent, 4000));
            heard[i] += wire.read(4000, 200);
        }
    }
    EXPECT_EQ(heard[0], heard[1]);
    EXPECT_NE(heard[0], heard[2]);
    EXPECT_NE(heard[0], data.left(heard[0].size()));
    EXPECT_NEAR(heard[0].size(), 14'850, 100);
}

TEST_F(Streams, AWrongCommandLineIsExplainedAndDoesNothing)
{
    const struct
    {
        QStringList arguments;
        const char* said;
    } rows[] = {
        {{}, "Devices:"},
        {{"ecoh"}, "no such device: ecoh"},
        {{"echo", "--baud", "fast"}, "--baud fast"},
        {{"echo", "--drop", "1.5"}, "--drop 1.5"},
        {{"echo", "--rate", "5"}, "rate"},
        {{"talk", "--hex", "--binary"}, "choose one"},
        {{"talk", "--rate", "fast"}, "from 0 to 1000000000 is"},
        {{"talk", "now"}, "unexpected: now"},
    };
    for (const auto& row : rows) {
        Simulated simulated(row.arguments);
        EXPECT_EQ(simulated.wait_for_exit(), 2) << row.said;
        EXPECT_TRUE(simulated.process.readAllStandardError().contains(row.said)) << row.said;
    }
}
} // namespace
