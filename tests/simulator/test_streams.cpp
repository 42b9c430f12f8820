// echo and talk, the life of their port, and the pace and the faults of a line.
#include "simulated.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <csignal>
#include <gtest/gtest.h>
#include <poll.h>

namespace {
class Streams : public testing::Test
{
protected:
    Sandbox sandbox;
};

TEST_F(Streams, EchoGivesBackEveryByteOfAMegabyte)
{
    const QByteArray data = random_bytes(1'000'000, 1);
    for (const char* command : {"echo", "echo --listen 0"}) {
        Simulated echo(command);
        EXPECT_EQ(Wire(echo.address).exchange(data, int(data.size())), data)
            << qPrintable(echo.address);
    }
}

TEST_F(Streams, EchoHoldsTheHostBackInsteadOfGrowing)
{
    Simulated echo("echo");
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
        Simulated echo("echo");
        EXPECT_EQ(echo.address, sandbox.ports_folder() + "/echo");
        EXPECT_TRUE(QFileInfo(echo.address).isSymLink());
        ::kill(pid_t(echo.process.processId()), signal);
        EXPECT_EQ(echo.wait_for_exit(), 0);
        EXPECT_FALSE(QFileInfo(echo.address).isSymLink());
    }
    QDir(sandbox.ports_folder()).removeRecursively();
    Simulated again("echo --name bench");
    EXPECT_EQ(again.address, sandbox.ports_folder() + "/bench");
    EXPECT_EQ(QFile::permissions(sandbox.ports_folder()) & 0x0FF, QFile::Permissions());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Wire(again.address).exchange("\r\n\x03 raw", 7), "\r\n\x03 raw");
    // What somebody left unread is gone, like bytes sent to an unplugged line.
    Wire(again.address).write_some("not waited for");
    QTest::qWait(200);
    EXPECT_EQ(Wire(again.address).read(1, 100), "");
}

TEST_F(Streams, AStaleLinkIsReplacedAndALivingOneRefused)
{
    QFile::link("/dev/pts/99999", sandbox.ports_folder() + "/echo");
    Simulated first("echo");
    Wire wire(first.address);
    EXPECT_EQ(wire.exchange("abc", 3), "abc");

    Simulated second("echo");
    EXPECT_EQ(second.wait_for_exit(), 1);
    EXPECT_TRUE(second.process.readAllStandardError().contains("--name"));
    EXPECT_EQ(wire.exchange("still there", 11), "still there");
    first.process.kill();
    first.process.waitForFinished();
    Simulated third("echo");
    EXPECT_EQ(Wire(third.address).exchange("abc", 3), "abc");
}

TEST_F(Streams, TalksTheSameNumberedLinesForTheSameSeed)
{
    QByteArray heard[2];
    for (QByteArray& text : heard) {
        Simulated talk("talk --rate 0 --line-length 40 --bytes 100000");
        QTest::qWait(50); // it waits for a listener
        text = Wire(talk.address).read(100'000);
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

TEST_F(Streams, EachRateAndDelayTakesItsTime)
{
    const QByteArray check = QByteArray::fromHex("64 00 00 00 00 00 00 00 10 7f 8a 3d 46 00 50 4b");
    const struct
    {
        QString command;
        QByteArray request;
        int answer_size;
        int least_ms;
    } rows[] = {
        {"talk --binary --rate 20000", {}, 10'000, 450},
        {"echo --baud 115200", random_bytes(11'520, 3), 11'520, 990},
        {"boot --boot --baud 9600 --delay 100", check, 4, 100 + 20 * 10000 / 9600},
    };
    for (const auto& row : rows) {
        Simulated simulated(row.command);
        Wire wire(simulated.address);
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(wire.exchange(row.request, row.answer_size).size(), row.answer_size);
        EXPECT_GE(clock.elapsed(), row.least_ms) << qPrintable(row.command);
    }
}

TEST_F(Streams, FaultsAreTheSameForTheSameSeed)
{
    const QByteArray cnet_requests = QByteArray("\xAB\xD1\xBA").repeated(600);
    const QByteArray bytes = random_bytes(20'000, 4);
    const struct
    {
        QString command;
        QString faults;
        QByteArray request;
        int answer_size;
        int tolerance;
    } rows[] = {
        {"cnet --silent-after 250", " --drop 0.1 --corrupt 0.1", cnet_requests, 250 * 9, 120},
        {"cnet --silent-after 250", " --double 0.1 --reorder 0.5", cnet_requests, 250 * 11, 150},
        {"echo --silent-after 15000", " --drop 0.1 --corrupt 0.1", bytes, 13'500, 200},
        {"echo --silent-after 15000", " --double 0.1 --reorder 0.1", bytes, 16'500, 400},
    };
    for (const auto& row : rows) {
        QByteArray heard[3];
        const char* const seeds[] = {"5", "5", "6"};
        for (int i = 0; i < 3; ++i) {
            Simulated faulty(row.command + row.faults + " --seed " + seeds[i]);
            heard[i] = Wire(faulty.address).exchange(row.request, 20'000, 500);
        }
        EXPECT_EQ(heard[0], heard[1]);
        EXPECT_NE(heard[0], heard[2]);
        EXPECT_NEAR(heard[0].size(), row.answer_size, row.tolerance);
    }
}

// Processor seconds and kilobytes of memory that a process has taken.
std::pair<double, long> taken_by(qint64 pid)
{
    QFile file(QString("/proc/%1/stat").arg(pid));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> fields = file.readAll().split(' ');
    return {(fields.value(13).toDouble() + fields.value(14).toDouble()) / sysconf(_SC_CLK_TCK),
            fields.value(23).toLong() * 4};
}

TEST_F(Streams, AListenerThatNeverReadsCostsNeitherMemoryNorTime)
{
    Simulated talk("talk --binary --rate 0");
    Wire wire(talk.address);
    pollfd ready = {wire.fd, POLLIN, 0};
    ASSERT_EQ(::poll(&ready, 1, PATIENCE_MS), 1);
    QTest::qWait(100);
    const auto [seconds, kilobytes] = taken_by(talk.process.processId());
    QTest::qWait(700);
    EXPECT_LT(taken_by(talk.process.processId()).first - seconds, 0.1);
    EXPECT_LE(taken_by(talk.process.processId()).second, kilobytes + 256);
}

TEST_F(Streams, TheManPageAndTheCompletionKnowEveryOptionOfEveryDevice)
{
    QByteArray page = file_content(PACKAGING_FOLDER "/man/tarnwick-sim.1");
    page.replace("\\-", "-");
    const QByteArray completion = file_content(PACKAGING_FOLDER "/bash-completion/tarnwick-sim");
    const auto printed = [](const QString& command) {
        Simulated simulated(command);
        EXPECT_EQ(simulated.wait_for_exit(), 0);
        return simulated.address + '\n' + simulated.process.readAllStandardOutput();
    };
    EXPECT_TRUE(printed("--version").startsWith("tarnwick-sim 1."));
    int options = 0;
    const QString overview = printed("help");
    QRegularExpressionMatchIterator devices =
        QRegularExpression("^  (\\w+)   ", QRegularExpression::MultilineOption)
            .globalMatch(overview);
    while (devices.hasNext()) {
        const QString device = devices.next().captured(1);
        QRegularExpressionMatchIterator names =
            QRegularExpression("--[a-z-]+").globalMatch(printed("help " + device));
        for (; names.hasNext(); ++options) {
            const QByteArray option = names.next().captured().toLatin1();
            EXPECT_TRUE(page.contains(option)) << option.constData();
            EXPECT_TRUE(completion.contains(option)) << option.constData();
        }
    }
    EXPECT_GT(options, 60);
}

TEST_F(Streams, AWrongCommandLineIsExplainedAndDoesNothing)
{
    const struct
    {
        QString command;
        const char* said;
    } rows[] = {
        {"", "Devices:"},
        {"ecoh", "no such device: ecoh"},
        {"echo --baud fast", "--baud fast"},
        {"echo --drop 1.5", "--drop 1.5"},
        {"echo --rate 5", "rate"},
        {"talk --hex --binary", "choose one"},
        {"talk --rate fast", "from 0 to 1000000000 is"},
        {"talk --rate 1e-12", "--rate 1e-12: 0, or a number from 0.001"},
        {"talk now", "unexpected: now"},
        {"help ecoh", "no such device: ecoh"},
        {"boot --reorder 2", "--reorder 2"},
        {"boot --hard-info zz", "--hard-info zz: hexadecimal digits"},
        {"boot --hard-info abc", "two for each byte"},
        {"boot --module M\u0416", "Latin-1"},
        {"boot --hard-info 00 --module " + QString(115, 'M'), "116 bytes"},
        {"boot --frame rtu:256", "--frame rtu:256"},
        {"boot --frame chan:123", "--frame chan:123"},
        {"boot --firmware 1.2.3.4.5.6", "--firmware"},
        {"cnet --device 8,0,1", "--device 8,0,1"},
        {"cnet --device 9,,1", "--device 9,,1"},
    };
    for (const auto& row : rows) {
        Simulated simulated(row.command);
        EXPECT_EQ(simulated.wait_for_exit(), 2) << row.said;
        EXPECT_TRUE(simulated.process.readAllStandardError().contains(row.said)) << row.said;
    }
}
} // namespace
