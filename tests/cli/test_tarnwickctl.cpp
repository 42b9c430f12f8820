// The program's commands, its exit codes and its words, over real ports.
#include "ctl.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <pty.h>

class TarnwickCtl : public testing::Test
{
protected:
    Sandbox sandbox;
};

TEST_F(TarnwickCtl, EndsWithTheCodeOfWhatHappened)
{
    const Simulated echo({"echo", "--silent-after", "8"});
    const struct
    {
        QStringList arguments;
        int exit;
        const char* error; // part of stderr
    } rows[] = {
        {{"--version"}, 0, ""},
        {{"help", "cnet", "search"}, 0, ""},
        {{}, 2, ""},
        {{"upgrad"}, 2, "no such command: upgrad"},
        {{"cnet", "serach"}, 2, "cnet search"},
        {{"ports", "--colour"}, 2, "'colour'"},
        {{"upgrade", "--link", "serial:x"}, 2, "FILE is missing"},
        {{"upgrade", __FILE__}, 2, "--link is missing"},
        {{"frame", "send", "--link", "serial:x"}, 2, "nothing to send"},
        {{"frame", "send", "--hex", "", "--link", "serial:x"}, 2, "no byte was given"},
        {{"frame", "send", "--hex", "1", "--link", "serial:x"}, 2, "  1\n  ^"},
        {{"frame", "send", "--hex", "01", "--link", "serial:x,9600,8Q1"},
         2,
         "  serial:x,9600,8Q1\n                 ^"},
        {{"dorv", "set", "colour", "1", "--link", "serial:x"}, 2, "no such setting: colour"},
        {{"dorv", "get", "freq", "--link", "serial:x"}, 2, "can be set, not read"},
        {{"dorv", "get", "class", "--link", "serial:x", "--frame", "dorv"}, 2, "^~~~"},
        {{"frame", "send", "--hex", "01", "--link", "serial:/dev/none"}, 3, "no such port"},
        {{"frame", "send", "--hex", "01", "--link", "tcp:127.0.0.1:1"}, 3, "127.0.0.1:1"},
        {{"frame", "send", "--hex", "01", "--link", "serial:echo", "--log", "/"}, 6, "log file"},
        {{"upgrade", "none.bin", "--link", "serial:echo"}, 6, "none.bin"},
        {{"upgrade", firmware_file(sandbox, "M1_0.bin", 0), "--link", "serial:echo"},
         6,
         "is empty"},
        {{"checksum", "none.bin"}, 6, "none.bin"},
        {{"frame", "exchange", "--hex", "010203", "--link", "serial:echo", "--frame", "crc16"},
         0,
         ""},
        {{"dorv", "reboot", "--link", "serial:echo", "--timeout", "50"}, 1, "module answered"},
        {{"cnet", "info", "--link", "serial:echo", "--timeout", "50"}, 4, "nothing came in time"},
    };
    for (const auto& row : rows) {
        const CtlResult result = run_ctl(row.arguments);
        EXPECT_EQ(result.exit, row.exit) << row.arguments.join(' ').toStdString();
        EXPECT_TRUE(result.err.contains(row.error)) << result.err.toStdString();
    }
}

TEST_F(TarnwickCtl, AnErrorIsJsonTooWhenAskedFor)
{
    const CtlResult result = run_ctl({"cnet", "info", "--link", "serial:/dev/none", "--json"});
    const QJsonObject error = result.json()["error"].toObject();
    EXPECT_EQ(error["exit"].toInt(), result.exit);
    EXPECT_EQ(error["name"].toString(), "link");
    EXPECT_FALSE(error["advice"].toString().isEmpty());
}

TEST_F(TarnwickCtl, ListsPortsThatCanBeNamedByTheirLastPart)
{
    const Simulated echo({"echo", "--name", "bench-7"});
    bool listed = false;
    for (const QJsonValue port : run_ctl({"ports", "--json"}).json()["ports"].toArray())
        listed = listed || port.toObject()["name"].toString() == echo.address;
    EXPECT_TRUE(listed);
    EXPECT_EQ(
        run_ctl({"frame", "exchange", "--hex", "05", "--read", "1", "--link", "serial:bench-7"})
            .out,
        "05\n");
}

TEST_F(TarnwickCtl, FramesGoOverEveryKindOfLink)
{
    const Simulated tcp({"echo", "--listen", "0"});
    const QString port = tcp.address.section(':', 1);
    for (const QString& link :
         {"tcp:localhost:" + port, "tcp:127.0.0.1:" + port, "rawtcp:127.0.0.1:" + port}) {
        const CtlResult result =
            run_ctl({"frame", "exchange", "--text", "hi", "--link", link, "--frame",
                     "crc16+rtu:7+chan:0102", "--read", "2", "--json", "-v"});
        EXPECT_EQ(result.exit, 0) << result.err.toStdString();
        EXPECT_EQ(result.json()["answer"].toString(), "68 69");
        // Address, prefix, payload, the CRC of the inner frame, that of the outer one.
        EXPECT_TRUE(result.err.contains("> 07 01 02 68 69 ")) << result.err.toStdString();
    }
}

TEST_F(TarnwickCtl, WorksOutCheckValuesOfFilesAndStandardInput)
{
    const QJsonObject sums =
        run_ctl({"checksum", "--json"}, "123456789").json()["checksums"].toObject();
    EXPECT_EQ(sums["crc16"].toString(), "4B37");
    EXPECT_EQ(sums["crc32inv"].toString(), "CBF43926");
    EXPECT_EQ(sums["md5"].toString(), "25F9E794323B453885F5181F1B624D0B");
    const QString file = firmware_file(sandbox, "data", 5000);
    EXPECT_EQ(run_ctl({"checksum", file, "--only", "crc16"}).out,
              run_ctl({"checksum", "-", "--only", "crc16"}, content_of(file)).out);
}

TEST_F(TarnwickCtl, SearchesConfiguresAndReadsCnetDevices)
{
    const Simulated sim({"cnet", "--device", "10,0,0x1234", "--device", "11,1,0xABCD"});
    const QStringList link = {"--link", "serial:cnet", "--timeout", "100"};
    const QJsonArray devices =
        run_ctl(QStringList{"cnet", "search", "--channels", "9-11", "--rates", "0,1", "--json"} +
                link)
            .json()["devices"]
            .toArray();
    ASSERT_EQ(devices.size(), 2);
    EXPECT_EQ(devices[0].toObject()["channel"].toInt(), 10);
    EXPECT_EQ(devices[1].toObject()["rate_text"].toString(), "500 kbps");
    EXPECT_TRUE(devices[1].toObject()["answer"].toString().startsWith("AB CD"));

    const QStringList there = QStringList{"--channel", "10", "--rate", "0"} + link;
    const QStringList get = QStringList{"cnet", "get", "1234", "--json"} + there;
    const QString before = run_ctl(get).json()["block"].toString();
    ASSERT_EQ(before.size(), 52 * 3 - 1);
    const QString saved = sandbox.path("block");
    EXPECT_EQ(run_ctl(QStringList{"cnet", "get", "1234", "--output", saved} + there).exit, 0);
    EXPECT_EQ(run_ctl(QStringList{"cnet", "set", "1234", "--word", "12=0A0B0C0D", "--word",
                                  "3=FFFFFFFF"} +
                      there)
                  .exit,
              0);
    QString changed = before;
    changed.replace(12 * 12, 11, "0A 0B 0C 0D").replace(3 * 12, 11, "FF FF FF FF");
    EXPECT_EQ(run_ctl(get).json()["block"].toString(), changed);
    EXPECT_EQ(run_ctl(QStringList{"cnet", "set", "1234", "--file", saved} + there).exit, 0);
    EXPECT_EQ(run_ctl(get).json()["block"].toString(), before);

    EXPECT_EQ(run_ctl(QStringList{"cnet", "value", "1234", "--json"} + there)
                  .json()["values"]
                  .toArray()
                  .size(),
              1);
    EXPECT_EQ(run_ctl(QStringList{"cnet", "get", "9999"} + there).exit, 4);
}

TEST_F(TarnwickCtl, SetsAndReadsSettingsOfDorvModules)
{
    const Simulated sim({"dorv", "--neighbours", "1"});
    const QStringList values[] = {
        {"devaddr", "0xab12"},
        {"heartbeat", "1", "20", "65535"},
        {"deveui", "00112233445566FF"},
        {"appkey", "000102030405060708090A0B0C0D0E0F"},
    };
    const Simulated quiet({"dorv", "--name", "quiet"});
    const QStringList link = {"--link", "serial:quiet", "--timeout", "150"};
    for (const QStringList& words : values) {
        EXPECT_EQ(run_ctl(QStringList{"dorv", "set"} + words + link).exit, 0);
        EXPECT_EQ(run_ctl(QStringList{"dorv", "get", words[0]} + link).out.trimmed(),
                  words.mid(1).join(' ').toLatin1());
    }
    EXPECT_EQ(run_ctl(QStringList{"dorv", "set", "pwrid", "-3"} + link).exit, 0);
    EXPECT_EQ(run_ctl(QStringList{"dorv", "mode", "pmac"} + link).exit, 0);
    EXPECT_EQ(run_ctl(QStringList{"dorv", "mode"} + link).out, "pmac\n");
    EXPECT_EQ(
        run_ctl(QStringList{"dorv", "list", "--json"} + link).json()["settings"].toObject().size(),
        10);
    EXPECT_GE(run_ctl({"dorv", "search", "--json", "--link", "serial:dorv", "--duration", "2"})
                  .json()["devices"]
                  .toArray()
                  .size(),
              1);
}

// A module that answers everything in the same words.
TEST_F(TarnwickCtl, RubbishIsNoSuccess)
{
    const Simulated echo({"echo"});
    for (const char* setting : {"appkey", "deveui", "class", "devaddr", "heartbeat"}) {
        const CtlResult result =
            run_ctl({"dorv", "get", setting, "--link", "serial:echo", "--timeout", "50"});
        EXPECT_EQ(result.exit, 1) << setting << ": " << result.out.toStdString();
    }
    EXPECT_EQ(run_ctl({"dorv", "mode", "radio", "--link", "serial:echo", "--timeout", "50"}).exit,
              1);
    EXPECT_EQ(run_ctl({"cnet", "info", "--link", "serial:echo", "--timeout", "50"}).exit, 5);
}

TEST_F(TarnwickCtl, TheManPageAndTheCompletionKnowEveryCommand)
{
    const QByteArray overview = run_ctl({"--help"}).out;
    QByteArray page = content_of(PACKAGING_FOLDER "/man/tarnwickctl.1");
    page.replace("\\-", "-").replace("\\(aq", "'");
    const QByteArray completion = content_of(PACKAGING_FOLDER "/bash-completion/tarnwickctl");
    bool in_codes = false;
    int checked = 0;
    for (const QByteArray& line : overview.split('\n')) {
        in_codes = in_codes || line.startsWith("Exit codes");
        const QByteArray name = line.mid(2, 17).trimmed();
        if (in_codes && line.startsWith("  ")) {
            EXPECT_TRUE(page.contains(line.mid(7))) << line.toStdString();
            ++checked;
        } else if (line.startsWith("  ") && !name.startsWith("tarnwickctl")) {
            EXPECT_TRUE(page.contains(name)) << name.toStdString();
            EXPECT_TRUE(completion.contains(name.split(' ').last())) << name.toStdString();
            ++checked;
        }
    }
    EXPECT_GT(checked, 20);
}
