// The program's commands, its exit codes and its words, over real ports.
#include "ctl.h"

#include <QJsonArray>
#include <QRegularExpression>

using TarnwickCtl = ProgramTest;

TEST_F(TarnwickCtl, EndsWithTheCodeOfWhatHappened)
{
    const Simulated parrot("echo --name parrot");
    auto silent = std::make_unique<Simulated>("echo --name silent --silent-after 0");
    file_write("empty.bin", {});
    file_write("large.bin", QByteArray(100, '.'));
    const std::tuple<const char*, int, const char*> rows[] = {
        // the last is a part of stderr
        {"--version", 0, ""},
        {"", 2, ""},
        {"upgrad", 2, "no such command: upgrad"},
        {"cnet serach", 2, "cnet search"},
        {"help upgrade bogus", 2, "no such command: upgrade bogus"},
        {"ports --colour", 2, "'colour'"},
        {"checksum --text", 2, "Missing value"},
        {"upgrade --link serial:none", 2, "FILE is missing"},
        {"upgrade /bin/sh", 2, "--link is missing"},
        {"frame send --link serial:none", 2, "nothing to send"},
        {"frame send --hex 1 --link serial:none", 2, "  1\n  ^"},
        {"frame send --hex 01 --link serial:none --timeout -5", 2, "--timeout -5: a number"},
        {"dorv rssi -5 --link serial:none", 2, "\"-5\": ADDRESS"},
        {"dorv search now --link serial:none", 2, "unexpected: now"},
        {"dorv set colour 1 --link serial:none", 2, "no such setting: colour"},
        {"dorv get freq --link serial:none", 2, "can be set, not read"},
        {"dorv get class --link serial:none --frame dorv", 2, "^~~~"},
        {"frame send --hex 01 --link serial:/dev/none", 3, "no such port"},
        {"frame send --hex 01 --link tcp:127.0.0.1:1", 3, "127.0.0.1:1"},
        {"frame send --hex 01 --link serial:parrot --log /", 6, "log file"},
        {"cnet set 1234 --link serial:silent --file large.bin", 2, "not 100"},
        {"upgrade none.bin --link serial:parrot", 6, "none.bin"},
        {"upgrade empty.bin --link serial:parrot", 6, "is empty"},
        {"checksum \x1b[2Jnone.bin", 6, "\\u001b[2Jnone.bin"},
        {"frame exchange --hex 010203 --link serial:parrot --frame crc16", 0, ""},
        {"cnet info --link serial:silent --timeout 50", 4, "nothing came in time"},
        {"dorv search --duration 0 --link serial:silent", 0, "No device reported itself."},
        {"dorv reboot --link serial:parrot --timeout 500", 1, "echoes"},
        {"cnet info --link serial:parrot --timeout 500", 5, ""},
    };
    for (const auto& [command, exit, error] : rows) {
        const CtlRun result(command);
        EXPECT_EQ(result.exit, exit) << command << ": " << result.out.toStdString();
        EXPECT_TRUE(result.err.contains(error)) << result.err.toStdString();
    }
    Ctl holder("dorv search --duration 600 -v --link serial:silent");
    ASSERT_TRUE(holder.says("nothing in time"));
    const QByteArray busy = CtlRun("cnet info --link serial:silent").err;
    EXPECT_TRUE(busy.contains("It is open in tarnwickctl (")) << busy.toStdString();
    silent.reset();
    EXPECT_EQ(holder.wait(), 3) << "the port has gone";
    auto server = std::make_unique<Simulated>("echo --listen 0");
    Ctl listener("dorv search --duration 600 -v --link tcp:" + server->address);
    ASSERT_TRUE(listener.says("nothing in time"));
    server.reset();
    EXPECT_EQ(listener.wait(), 3) << "the connection is lost";
    EXPECT_TRUE(ctl_json("help dorv")["help"].toString().contains("dorv reset"));
    const QJsonObject error = ctl_json("cnet info --link serial:/dev/none")["error"].toObject();
    EXPECT_EQ(error["exit"].toInt(), 3);
    EXPECT_EQ(error["name"].toString(), "link");
}

TEST_F(TarnwickCtl, ListsPortsAndSendsFramesOverThemAndOverTheNetwork)
{
    const Simulated port("echo --name bench-7");
    const Simulated tcp("echo --listen 0");
    const QByteArray listed = CtlRun("ports --json").out;
    EXPECT_TRUE(listed.contains("\"name\":\"" + port.address.toUtf8() + '"'))
        << listed.toStdString();
    const QFileDevice::Permissions rights = QFile::permissions(sandbox.ports_folder());
    QFile::setPermissions(sandbox.ports_folder(), rights | QFile::WriteOther);
    EXPECT_EQ(ctl_json("ports")["ignored_folder"].toString(), sandbox.ports_folder());
    QFile::setPermissions(sandbox.ports_folder(), rights);
    for (const QString& link : {QString("serial:bench-7"), "rawtcp:" + tcp.address,
                                "tcp:localhost:" + tcp.address.section(':', 1)}) {
        const CtlRun result("frame exchange --text hi --frame crc16+rtu:7+chan:0102 "
                            "--read 2 --json -v --link " +
                            link);
        EXPECT_EQ(result.json()["answer"].toString(), "68 69") << result.err.toStdString();
        // Address, prefix, payload, the CRC of the inner frame, that of the outer one.
        EXPECT_TRUE(result.err.contains("> 07 01 02 68 69 ")) << result.err.toStdString();
    }
}

TEST_F(TarnwickCtl, CompletionOffersPortsAndRunsNothingThatTheyAreNamed)
{
    const Simulated echo("echo --name odd$(>ran)");
    const std::pair<const char*, QByteArray> rows[] = {
        {"frame send --link serial:", "/odd\\$\\(\\>ran\\)\n"},
        {"frame send --link serial:od", "odd\\$\\(\\>ran\\)\n"},
        {"dorv set class ", "a\nb\nc\n"},
        {"dorv set uartcfg 9600 8 n", "none\n"},
    };
    for (const auto& [typed, offered] : rows) {
        Program bash("bash", {"-c", R"(
            tarnwickctl() { )" TARNWICKCTL R"( "$@"; }
            source )" PACKAGING_FOLDER R"(/bash-completion/tarnwickctl
            COMP_LINE="tarnwickctl $1"; COMP_POINT=${#COMP_LINE}
            _tarnwickctl; printf '%s\n' "${COMPREPLY[@]}")",
                              "bash", typed});
        EXPECT_EQ(bash.wait(), 0) << bash.err.toStdString();
        EXPECT_TRUE(bash.out.endsWith(offered)) << typed << ": " << bash.out.toStdString();
    }
    EXPECT_FALSE(QFile::exists("ran"));
}

TEST_F(TarnwickCtl, WorksOutCheckValuesOfFilesAndStandardInput)
{
    const QJsonObject sums = CtlRun("checksum --json", "123456789").json()["checksums"].toObject();
    EXPECT_EQ(sums["crc16"].toString(), "4B37");
    EXPECT_EQ(sums["crc32inv"].toString(), "CBF43926");
    EXPECT_EQ(sums["md5"].toString(), "25F9E794323B453885F5181F1B624D0B");
    EXPECT_EQ(CtlRun("checksum --text -5 --only sum8").out, "62\n");
    file_write("data", "123456789");
    EXPECT_EQ(CtlRun("checksum --only crc16 data").out, "4B37\n");
}

TEST_F(TarnwickCtl, SearchesConfiguresAndReadsCnetDevices)
{
    const Simulated sim("cnet --device 10,0,0x1234 --device 11,1,0xABCD");
    const QString link = " --link serial:cnet --timeout 400";
    const QJsonArray devices =
        ctl_json("cnet search --channels 9-11 --rates 0,1" + link)["devices"].toArray();
    ASSERT_EQ(devices.size(), 2);
    EXPECT_EQ(devices[1].toObject()["rate_text"].toString(), "500 kbps");
    EXPECT_TRUE(devices[1].toObject()["answer"].toString().startsWith("AB CD"));

    const QString there = " 1234 --channel 10 --rate 0" + link;
    const QString saved = sandbox.path("block");
    const QString before = ctl_json("cnet get --output " + saved + there)["block"].toString();
    ASSERT_EQ(before.size(), 52 * 3 - 1);
    EXPECT_EQ(CtlRun("cnet set --word 12=0A0B0C0D --word 3=FFFFFFFF" + there).exit, 0);
    QString changed = before;
    changed.replace(12 * 12, 11, "0A 0B 0C 0D").replace(3 * 12, 11, "FF FF FF FF");
    EXPECT_EQ(ctl_json("cnet get" + there)["block"].toString(), changed);
    EXPECT_EQ(CtlRun("cnet set --file " + saved + there).exit, 0);
    EXPECT_EQ(ctl_json("cnet get" + there)["block"].toString(), before);

    EXPECT_EQ(ctl_json("cnet value" + there)["values"].toArray(), QJsonArray{40});
    EXPECT_EQ(CtlRun("cnet get 9999" + link).exit, 4);
}

TEST_F(TarnwickCtl, SetsAndReadsSettingsOfDorvModules)
{
    const Simulated dorv("dorv");
    const QString link = " --link serial:dorv --timeout 150";
    const std::pair<const char*, QByteArray> settings[] = {
        {"devaddr", "0xab12\n"},
        {"heartbeat", "1 20 65535\n"},
        {"deveui", "00112233445566FF\n"},
        {"appkey", "000102030405060708090A0B0C0D0E0F\n"},
    };
    for (const auto& [name, value] : settings) {
        EXPECT_EQ(CtlRun("dorv set " + (name + (' ' + value.trimmed())) + link).exit, 0);
        EXPECT_EQ(CtlRun("dorv get " + (name + link)).out, value);
    }
    EXPECT_EQ(CtlRun("dorv set pwrid -3" + link).exit, 0);
    EXPECT_EQ(CtlRun("dorv mode pmac" + link).exit, 0);
    EXPECT_EQ(CtlRun("dorv mode" + link).out, "pmac\n");
    EXPECT_EQ(ctl_json("dorv list" + link)["settings"].toObject().size(), 10);
    for (const QByteArray answer : {"no\n", "yes\n"}) {
        CtlOnTerminal reset("dorv reset" + link);
        ASSERT_TRUE(wait_until([&] { return reset.screen().contains("--yes"); }));
        reset.terminal.write(answer);
        ASSERT_TRUE(wait_until([&] { return reset.state() == QProcess::NotRunning; }));
        EXPECT_EQ(reset.exitCode(), answer == "yes\n" ? 0 : 130);
        EXPECT_EQ(CtlRun("dorv mode" + link).out, answer == "yes\n" ? "radio\n" : "pmac\n");
    }
}

TEST_F(TarnwickCtl, ASearchWhoseReportsNeverPauseEndsInTimeWithAllOfThem)
{
    const Simulated serial("dorv --neighbours 1000");
    const Simulated tcp("dorv --neighbours 1000 --listen 0");
    for (const QString& link : {QString("serial:dorv"), "tcp:" + tcp.address}) {
        const QJsonArray found =
            ctl_json("dorv search --duration 1 --link " + link)["devices"].toArray();
        ASSERT_GE(found.size(), 5);
        const int first = found[0].toString().section(',', 2, 2).toInt(nullptr, 16);
        for (int i = 0; i < found.size(); ++i)
            EXPECT_EQ(found[i].toString(),
                      QString("125,7,0x%1,%2").arg(first + i, 0, 16).arg(-40 - (first + i) % 60));
    }
}

TEST_F(TarnwickCtl, TheManPagesAndTheCompletionsKnowWhatTheHelpNames)
{
    const QString help = CtlRun("--help").out;
    QString simulator_help;
    for (const char* device : {"echo", "talk", "boot", "cnet", "dorv", "replay", "answer"}) {
        Simulated simulator(QString("help ") + device);
        EXPECT_EQ(simulator.wait(), 0);
        simulator_help += simulator.out;
    }
    const std::tuple<const char*, QString, const char*> rows[] = {
        {"/man/tarnwickctl.1", help, "^  \\w+( \\w+)?(?=  )"}, // commands
        {"/man/tarnwickctl.1", help, "(?<=\\d  ).+$"},         // what exit codes mean
        {"/bash-completion/tarnwickctl", help, "\\w+(?=   )"},
        {"/man/tarnwick-sim.1", simulator_help, "--[a-z-]+"},
        {"/bash-completion/tarnwick-sim", simulator_help, "--[a-z-]+"},
    };
    for (const auto& [file, text, pattern] : rows) {
        QString content = file_content(QString(PACKAGING_FOLDER) + file);
        content.replace("\\-", "-").replace("\\(aq", "'");
        auto words =
            QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
        EXPECT_TRUE(words.hasNext());
        while (words.hasNext()) {
            const QString word = words.next().captured().trimmed();
            EXPECT_TRUE(content.contains(word)) << file << ": " << word.toStdString();
        }
    }
}
