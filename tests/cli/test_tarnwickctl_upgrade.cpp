// Upgrades by the real program of simulated modules.
#include "ctl.h"
#include "netpeer.h"

#include <QFileInfo>
#include <QJsonArray>

class CtlUpgrade : public ProgramTest
{
protected:
    static QString upgrade(const QString& file, const QString& link = "serial:boot")
    {
        return "upgrade " + file + " --frame crc16 --reset-wait 200 --verify-wait 100 " +
               "--timeout 300 --link " + link;
    }
    QString module(const QString& image = "rom") const
    {
        return "boot --rom 65536 --image " + sandbox.path(image);
    }
    // A file of so many bytes, by its path.
    QString firmware_file(const QString& name, int size) const
    {
        file_write(sandbox.path(name), mixed_bytes(size, std::uint32_t(size)));
        return sandbox.path(name);
    }
};

TEST_F(CtlUpgrade, PutsTheFileIntoTheModuleOverEachLinkAndTheSecondTimeSendsChecksAlone)
{
    const Simulated serial(module());
    const Simulated network(module("rom2") + " --listen 0");
    const auto server = NetPeer::ser2net(QFileInfo(serial.address).symLinkTarget());
    const QString log = sandbox.path("log");
    const std::tuple<QString, const char*, int> rows[] = {
        {"serial:boot", "rom", 20001},
        {QString("tcp:127.0.0.1:%1").arg(server->port()), "rom", 20002},
        {"tcp:" + network.address, "rom2", 10003},
        {"rawtcp:" + network.address, "rom2", 10005},
    };
    for (const auto& [link, image, size] : rows) {
        const QString file = firmware_file("M1_2.bin", size);
        const CtlRun first(upgrade(file, link) + " --json --log " + log);
        ASSERT_EQ(first.exit, 0) << first.err.toStdString();
        EXPECT_EQ(first.json()["bytes"].toInt(), size);
        EXPECT_TRUE(first.err.contains("Device: M1 V1")) << first.err.toStdString();
        EXPECT_EQ(file_content(sandbox.path(image)), file_content(file));
        // 3 information requests and commands to start, 5 pages and the file to check.
        EXPECT_LT(ctl_json(upgrade(file, link))["wire_bytes_sent"].toInt(), 200);
    }
    EXPECT_TRUE(file_content(log).contains(" tcpip: connected"));
    EXPECT_EQ(file_content(log).count("ldr: device reboot"), 4); // one run after the other
}

TEST_F(CtlUpgrade, ARecordedUpgradeIsTheModuleOfTheNextOnes)
{
    const QString command = upgrade(firmware_file("M1_2.bin", 20000)) + " --record ";
    const QString first = sandbox.path("first.pcapng"), again = sandbox.path("again.pcapng");
    {
        const Simulated sim(module());
        ASSERT_EQ(CtlRun(command + first).exit, 0);
    }
    const Simulated answering("answer --name boot " + first);
    const CtlRun second(command + again);
    EXPECT_TRUE(second.out.contains("20000 bytes sent and verified")) << second.err.toStdString();
    const CtlRun difference("capture diff " + first + ' ' + again);
    EXPECT_EQ(difference.exit, 0) << difference.out.toStdString();
    EXPECT_EQ(CtlRun("capture info " + first).out.count("\nport"), 1);
    EXPECT_EQ(CtlRun(command + "/dev/null/x").exit, 6);
}

// What goes wrong, and that the right command puts it right.
TEST_F(CtlUpgrade, SaysWhyAnUpgradeCannotBeAndCanBeRepeated)
{
    const QString file = firmware_file("M1_2.bin", 30000);
    const std::tuple<QString, QString, int, const char*> rows[] = {
        {" --silent-after 12", upgrade(file), 4, "the transfer failed"},
        {" --cut-after 12", upgrade(file), 3, "the connection is lost"},
        {" --mtu 0", upgrade(file), 1, "MTU of 0"},
        {" --rom 20000", upgrade(file), 1, "Maybe the file (30000 bytes) is larger than"},
        {"", upgrade(firmware_file("M2_1.bin", 100)), 1,
         "wrong firmware (M2_1.bin) for module (M1)"},
        {"", upgrade(file).replace("crc16", "rtu:9 --retries 1"), 4, "--frame"},
        {"", upgrade(file, "tcp:127.0.0.1:1"), 3, ""},
    };
    for (const auto& [fault, command, exit, error] : rows) {
        std::optional<Simulated> faulty(module() + fault);
        const CtlRun failed(command);
        EXPECT_EQ(failed.exit, exit) << failed.err.toStdString();
        EXPECT_TRUE(failed.err.contains(error)) << failed.err.toStdString();
        if (fault.isEmpty())
            continue;
        faulty.reset();
        const Simulated sim(module());
        EXPECT_EQ(CtlRun(upgrade(file)).exit, 0);
        EXPECT_EQ(file_content(sandbox.path("rom")), file_content(file));
        QFile::remove(sandbox.path("rom"));
    }
}

TEST_F(CtlUpgrade, UpgradesModulesAtSeveralLinksAtOnceAndSaysHowEachHasEnded)
{
    const Simulated serial(module("rom1"));
    const Simulated network(module("rom2") + " --listen 0");
    const Simulated other(module("rom3") + " --module M7 --name other");
    const QString file = firmware_file("M1_2.bin", 30000);
    const QString links[] = {"serial:boot", "tcp:" + network.address, "serial:other",
                             "tcp:127.0.0.1:1"};
    const QString two = upgrade(file, links[0] + " --link " + links[1]);
    const QString log = sandbox.path("log"), record = sandbox.path("both.pcapng");
    const CtlRun good(two + " --log " + log + " --record " + record);
    EXPECT_EQ(good.exit, 0) << good.err.toStdString();
    const QList<QByteArray> lines = good.out.split('\n');
    ASSERT_EQ(lines.size(), 3) << good.out.toStdString();
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(lines[i].startsWith(links[i].toLatin1() + ' ') &&
                    lines[i].contains("  upgraded  M1 V1.00.000000 APP  30000 bytes in "))
            << lines[i].toStdString();
    EXPECT_TRUE(good.err.contains("boot: Device: M1 V1")) << good.err.toStdString();
    EXPECT_TRUE(good.err.contains("100 %  60000 of 60000 bytes")) << good.err.toStdString();
    EXPECT_TRUE(file_content(log).contains(" boot ldr: device reboot"));
    EXPECT_EQ(CtlRun("capture info " + record).out.count("\nport"), 2);
    for (const char* const image : {"rom1", "rom2"})
        EXPECT_EQ(file_content(sandbox.path(image)), file_content(file));

    const CtlRun mixed(two + " --link " + links[2] + " --link " + links[3] + " --json");
    EXPECT_EQ(mixed.exit, 1) << mixed.err.toStdString(); // of the first that failed
    EXPECT_EQ(mixed.json()["result"].toString(), "failed");
    EXPECT_EQ(mixed.json()["error"].toObject()["message"].toString(), "2 of 4 upgrades failed");
    const QJsonArray modules = mixed.json()["modules"].toArray();
    ASSERT_EQ(modules.size(), 4);
    const int exits[] = {0, 0, 1, 3};
    for (int i = 0; i < 4; ++i) {
        const QJsonObject module = modules[i].toObject();
        EXPECT_EQ(module["link"].toString(), links[i]);
        EXPECT_EQ(module["result"].toString(), exits[i] ? "failed" : "upgraded");
        EXPECT_EQ(module["error"].toObject()["exit"].toInt(), exits[i]);
    }
    EXPECT_LT(modules[0].toObject()["wire_bytes_sent"].toInt(), 400);
    EXPECT_EQ(CtlRun(upgrade(file, links[0] + " --link " + links[0])).exit, 2);
}

TEST_F(CtlUpgrade, CtrlCStopsItCleanlyAndARerunCompletesIt)
{
    const Simulated sim(module() + " --baud 115200");
    const QString file = firmware_file("M1_2.bin", 40000);
    Ctl ctl(upgrade(file) + " --json");
    ASSERT_TRUE(ctl.says("20 %")); // a line of its own, in a pipe
    ctl.raise(SIGINT);
    EXPECT_EQ(ctl.wait(), 130);
    EXPECT_EQ(ctl.json()["error"].toObject()["name"].toString(), "interrupted");
    EXPECT_TRUE(ctl.err.contains("Run the same command again")) << ctl.err.toStdString();
    EXPECT_LT(ctl_json(upgrade(file))["wire_bytes_sent"].toInt(), 39000);
    EXPECT_EQ(file_content(sandbox.path("rom")), file_content(file));
}

TEST_F(CtlUpgrade, ASecondCtrlCEndsItAtOnce)
{
    const Simulated sim("echo --silent-after 0");
    Ctl ctl(upgrade(firmware_file("M1_2.bin", 100), "serial:echo -v --timeout 600000"));
    ASSERT_TRUE(ctl.says("> 61"));
    ctl.raise(SIGINT);
    ASSERT_TRUE(ctl.says("Ctrl-C again ends at once"));
    ctl.raise(SIGINT);
    EXPECT_EQ(ctl.wait(), -1);
}

TEST_F(CtlUpgrade, ProgressStaysOnOneLineOfATerminal)
{
    const Simulated sim(module());
    const QString file = firmware_file("M1_2.bin", 40000);
    CtlOnTerminal process(upgrade(file));
    ASSERT_TRUE(wait_until([&] {
        process.screen();
        return process.state() == QProcess::NotRunning;
    }));
    EXPECT_EQ(process.exitCode(), 0);
    const QByteArray seen = process.screen();
    EXPECT_TRUE(seen.contains("\r[====================] 100 %  40000 of 40000 bytes"))
        << seen.toStdString();
    EXPECT_LT(seen.count('\n'), seen.count("] "));
}
