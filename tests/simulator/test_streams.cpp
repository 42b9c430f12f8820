// echo and talk, the life of their port, and the pace and the faults of a line.
#include "simulated.h"
#include "wire.h"

#include <QElapsedTimer>
#include <QFileInfo>

namespace {
using Streams = ProgramTest;

TEST_F(Streams, EchoGivesBackEveryByteOfAMegabyte)
{
    const QByteArray data = mixed_bytes(1'000'000, 1);
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
    const QByteArray data = mixed_bytes(1'000'000, 2);
    int sent = 0;
    // Nobody reads: the host is stopped well before a megabyte.
    for (pollfd ready = {wire.fd, POLLOUT, 0}; sent < 300'000 && ::poll(&ready, 1, 300) > 0;)
        sent += wire.write_some(data.mid(sent));
    EXPECT_LT(sent, 300'000);
    EXPECT_EQ(wire.read(sent), data.left(sent));
}

TEST_F(Streams, ThePortIsRawAndPrivateAndEndsWithTheSimulator)
{
    for (int signal : {SIGTERM, SIGINT}) {
        Simulated echo("echo");
        EXPECT_EQ(echo.address, sandbox.ports_folder() + "/echo");
        EXPECT_TRUE(QFileInfo(echo.address).isSymLink());
        echo.raise(signal);
        EXPECT_EQ(echo.wait(), 0);
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
    EXPECT_EQ(second.wait(), 1);
    EXPECT_TRUE(second.err.contains("--name"));
    EXPECT_EQ(wire.exchange("still there", 11), "still there");
    first.process.kill();
    first.process.waitForFinished();
    Simulated third("echo");
    EXPECT_EQ(Wire(third.address).exchange("abc", 3), "abc");
}

TEST_F(Streams, TalksTheSameNumberedLinesForTheSameSeed)
{
    QByteArrayList heard;
    for (int i = 0; i < 2; ++i) {
        Simulated talk("talk --rate 0 --line-length 40 --bytes 100000");
        QTest::qWait(50); // it waits for a listener
        heard += Wire(talk.address).read(100'000);
    }
    EXPECT_EQ(heard[0], heard[1]);
    EXPECT_EQ(heard[0].size(), 100'000);
    int number = 0;
    for (const QByteArray& line : heard[0].chopped(1).split('\n')) {
        ASSERT_EQ(line.left(9).toInt(), ++number);
        ASSERT_EQ(line.size(), 39);
    }
}

TEST_F(Streams, EachRateAndDelayTakesItsTime)
{
    const QByteArray check = QByteArray::fromHex("64 00 00 00 00 00 00 00 10 7f 8a 3d 46 00 50 4b");
    const std::tuple<QString, QByteArray, int, int> rows[] = {
        {"talk --binary --rate 20000", {}, 10'000, 450},
        {"echo --baud 115200", mixed_bytes(11'520, 3), 11'520, 990},
        {"boot --boot --baud 9600 --delay 100", check, 4, 100 + 20 * 10000 / 9600},
    };
    for (const auto& [command, request, answer_size, least_ms] : rows) {
        Simulated simulated(command);
        Wire wire(simulated.address);
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(wire.exchange(request, answer_size).size(), answer_size);
        EXPECT_GE(clock.elapsed(), least_ms) << qPrintable(command);
    }
}

TEST_F(Streams, FaultsAreTheSameForTheSameSeed)
{
    const QByteArray cnet_requests = QByteArray("\xAB\xD1\xBA").repeated(600);
    const QByteArray bytes = mixed_bytes(20'000, 4);
    const std::tuple<QString, QByteArray, int, int> rows[] = {
        {"cnet --silent-after 250 --drop 0.1 --corrupt 0.1", cnet_requests, 250 * 9, 120},
        {"cnet --silent-after 250 --double 0.1 --reorder 0.5", cnet_requests, 250 * 11, 150},
        {"echo --silent-after 15000 --drop 0.1 --corrupt 0.1", bytes, 13'500, 200},
        {"echo --silent-after 15000 --double 0.1 --reorder 0.1", bytes, 16'500, 400},
    };
    for (const auto& [command, request, answer_size, tolerance] : rows) {
        QByteArrayList heard;
        for (const char* seed : {"5", "5", "6"}) {
            Simulated faulty(command + " --seed " + seed);
            heard += Wire(faulty.address).exchange(request, 20'000, 500);
        }
        EXPECT_EQ(heard[0], heard[1]);
        EXPECT_NE(heard[0], heard[2]);
        EXPECT_NEAR(heard[0].size(), answer_size, tolerance);
    }
}

TEST_F(Streams, AListenerThatNeverReadsCostsNothing)
{
    Simulated talk("talk --binary --rate 0");
    Wire wire(talk.address);
    pollfd ready = {wire.fd, POLLIN, 0};
    ASSERT_EQ(::poll(&ready, 1, PATIENCE_MS), 1);
    // It sleeps whenever somebody looks.
    const QString status = QString("/proc/%1/stat").arg(talk.process.processId());
    int in_a_row = 0;
    EXPECT_TRUE(wait_until([&] {
        const bool sleeps = file_content(status).split(' ').value(2) == "S";
        in_a_row = sleeps ? in_a_row + 1 : 0;
        return in_a_row == 500;
    }));
}

TEST_F(Streams, AWrongCommandLineIsExplainedAndDoesNothing)
{
    const std::pair<QString, const char*> rows[] = {
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
    for (const auto& [command, said] : rows) {
        Simulated simulated(command);
        EXPECT_EQ(simulated.wait(), 2) << said;
        EXPECT_TRUE(simulated.err.contains(said)) << said;
    }
}
} // namespace
