// Upgrades by the real program of simulated modules.
#include "ctl.h"

#include <csignal>
#include <pty.h>

class CtlUpgrade : public testing::Test
{
protected:
    QStringList upgrade(const QString& file, const QStringList& more = {}) const
    {
        return QStringList{"upgrade",       file,    "--link",       "serial:boot",
                           "--frame",       "crc16", "--reset-wait", "200",
                           "--verify-wait", "100",   "--timeout",    "300"} +
               more;
    }
    // What the module holds of the file's length.
    QByteArray image(const QString& file) const
    {
        return content_of(sandbox.path("rom")).left(int(QFileInfo(file).size()));
    }
    QStringList module(const QStringList& more = {}) const
    {
        return QStringList{"boot", "--image", sandbox.path("rom"), "--rom", "65536"} + more;
    }

    Sandbox sandbox;
};

TEST_F(CtlUpgrade, PutsTheFileIntoTheModuleAndTheSecondTimeSendsChecksAlone)
{
    Simulated sim(module());
    const QString file = firmware_file(sandbox, "M1_2.bin", 20000);
    const CtlResult first = run_ctl(upgrade(file, {"--json"}));
    ASSERT_EQ(first.exit, 0) << first.err.toStdString();
    EXPECT_EQ(first.json()["bytes"].toInt(), 20000);
    EXPECT_TRUE(first.err.contains("Device: M1 V1")) << first.err.toStdString();
    const CtlResult second = run_ctl(upgrade(file, {"--json"}));
    EXPECT_EQ(second.exit, 0);
    // 3 information requests and commands to start, 5 pages and the file to check.
    EXPECT_LT(second.json()["wire_bytes_sent"].toInt(), 200);
    sim.end();
    EXPECT_EQ(image(file), content_of(file));
}

TEST_F(CtlUpgrade, TellsWhyAnUpgradeCannotBe)
{
    const Simulated sim(module());
    const QString alien = firmware_file(sandbox, "M2_1.bin", 100);
    const CtlResult wrong = run_ctl(upgrade(alien));
    EXPECT_EQ(wrong.exit, 1);
    EXPECT_TRUE(wrong.err.contains("wrong firmware (M2_1.bin) for module (M1)"))
        << wrong.err.toStdString();

    const QString file = firmware_file(sandbox, "M1_1.bin", 100);
    const CtlResult silent = run_ctl({"upgrade", file, "--link", "serial:boot", "--frame", "rtu:9",
                                      "--timeout", "50", "--retries", "1"});
    EXPECT_EQ(silent.exit, 4);
    EXPECT_TRUE(silent.err.contains("--frame")) << silent.err.toStdString();
    EXPECT_EQ(run_ctl({"upgrade", file, "--link", "tcp:127.0.0.1:1"}).exit, 3);
}

// What goes wrong on the way, and that the same command again puts it right.
TEST_F(CtlUpgrade, ADeviceThatFailsOnTheWayIsToldFromALostLink)
{
    const QString file = firmware_file(sandbox, "M1_2.bin", 30000);
    const struct
    {
        QStringList fault;
        int exit;
        const char* error;
    } rows[] = {
        {{"--silent-after", "12"}, 4, "the transfer failed"},
        {{"--cut-after", "12"}, 3, "the connection is lost"},
        {{"--mtu", "0"}, 1, "neither may be 0"},
    };
    for (const auto& row : rows) {
        {
            const Simulated sim(module(row.fault));
            const CtlResult failed = run_ctl(upgrade(file));
            EXPECT_EQ(failed.exit, row.exit) << failed.err.toStdString();
            EXPECT_TRUE(failed.err.contains(row.error)) << failed.err.toStdString();
        }
        Simulated sim(module());
        EXPECT_EQ(run_ctl(upgrade(file)).exit, 0);
        sim.end();
        EXPECT_EQ(image(file), content_of(file));
        QFile::remove(sandbox.path("rom"));
    }
}

TEST_F(CtlUpgrade, CtrlCStopsItCleanlyAndARerunCompletesIt)
{
    Simulated sim(module({"--baud", "115200"}));
    const QString file = firmware_file(sandbox, "M1_2.bin", 40000);
    Ctl ctl(upgrade(file, {"--json"}));
    ASSERT_TRUE(ctl.says("20 %"));
    ctl.raise(SIGINT);
    const CtlResult stopped = ctl.wait();
    EXPECT_EQ(stopped.exit, 130);
    EXPECT_EQ(stopped.json()["error"].toObject()["name"].toString(), "interrupted");
    EXPECT_TRUE(stopped.err.contains("Run the same command again")) << stopped.err.toStdString();
    EXPECT_NE(image(file), content_of(file));

    const CtlResult again = run_ctl(upgrade(file, {"--json"}));
    EXPECT_EQ(again.exit, 0) << again.err.toStdString();
    EXPECT_LT(again.json()["wire_bytes_sent"].toInt(), 39000);
    sim.end();
    EXPECT_EQ(image(file), content_of(file));
}

TEST_F(CtlUpgrade, ASecondCtrlCEndsItAtOnce)
{
    const Simulated sim({"echo", "--silent-after", "0"});
    const QString file = firmware_file(sandbox, "M1_2.bin", 100);
    Ctl ctl({"upgrade", file, "--link", "serial:echo", "--timeout", "600000", "-v"});
    ASSERT_TRUE(ctl.says("> 61"));
    ctl.raise(SIGINT);
    ASSERT_TRUE(ctl.says("Ctrl-C again ends at once"));
    ctl.raise(SIGINT);
    EXPECT_EQ(ctl.wait().exit, -1);
}

TEST_F(CtlUpgrade, WorksOverTheNetworkToo)
{
    Simulated sim(module({"--listen", "0"}));
    const QString file = firmware_file(sandbox, "M1_2.bin", 10000);
    for (const QString kind : {"tcp", "rawtcp"}) {
        const CtlResult result =
            run_ctl({"upgrade", file, "--link", kind + ':' + sim.address, "--frame", "crc16",
                     "--reset-wait", "200", "--verify-wait", "0", "--log", sandbox.path("log")});
        EXPECT_EQ(result.exit, 0) << result.err.toStdString();
    }
    sim.end();
    EXPECT_EQ(image(file), content_of(file));
    const QByteArray log = content_of(sandbox.path("log"));
    EXPECT_TRUE(log.contains(" tcpip: connected"));
    EXPECT_TRUE(log.contains("ldr: device reboot"));
    EXPECT_EQ(log.count("Upgrade thread started"), 2); // the second run went behind the first
}

TEST_F(CtlUpgrade, ProgressStaysOnOneLineOfATerminalAndIsLinesInAPipe)
{
    const Simulated sim(module());
    const QString file = firmware_file(sandbox, "M1_2.bin", 40000);
    Pty terminal;
    QProcess process;
    process.setStandardErrorFile(terminal.device());
    process.start(TARNWICKCTL, upgrade(file));
    QByteArray seen;
    ASSERT_TRUE(wait_until([&] {
        seen += terminal.read_now();
        return process.state() == QProcess::NotRunning;
    }));
    seen += terminal.read_now();
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(seen.contains("\r[====================] 100 %  40000 of 40000 bytes"))
        << seen.toStdString();
    EXPECT_LT(seen.count('\n'), seen.count("] "));

    const CtlResult piped = run_ctl(upgrade(file));
    EXPECT_EQ(piped.err.count('\r'), 0);
    EXPECT_GE(piped.err.count('\n'), 10);
}
