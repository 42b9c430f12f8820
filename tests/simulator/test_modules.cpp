// boot, cnet and dorv, byte by byte, and what the line does to them.
#include "simulated.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>

namespace {
constexpr int SILENCE_MS = 150; // an answer that has not begun by then is none

// Both as hexadecimal text; an empty answer stands for silence.
struct Step
{
    const char* request;
    const char* answer;
};

void expect_steps(Wire& wire, const std::vector<Step>& steps)
{
    for (const Step& step : steps) {
        const QByteArray request = QByteArray::fromHex(step.request);
        const QByteArray answer = QByteArray::fromHex(step.answer);
        const QByteArray came = answer.isEmpty() ? wire.exchange(request, 1, SILENCE_MS)
                                                 : wire.exchange(request, int(answer.size()));
        ASSERT_EQ(came.toHex(' '), answer.toHex(' ')) << step.request;
    }
}

struct Words
{
    QByteArray command;
    QByteArray answer;
};

void expect_words(Wire& wire, const std::vector<Words>& rows)
{
    for (const Words& row : rows)
        ASSERT_EQ(wire.exchange(row.command + '\r', int(row.answer.size())), row.answer)
            << row.command.constData();
}

bool hung_up(const Wire& wire)
{
    pollfd state = {wire.fd, POLLIN, 0};
    char byte = 0;
    return ::poll(&state, 1, 0) == 1 && ::read(wire.fd, &byte, 1) <= 0;
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

const char IN_APPLICATION[] = "61 00 01 02 03 04 05 06 00 10 00 08 4d 31 00 de ad be ef 17 1a";
const char IN_BOOT[] = "61 01 01 02 03 04 05 06 00 10 00 08 4d 31 00 de ad be ef 46 e6";
const char ASK[] = "61 7e a8";
const char ENTER_BOOT[] = "62 3e a9";
const char REBOOT[] = "63 ff 69";
const char FIRST_CHECK[] = "64 00 00 00 00 00 00 00 10 7f 8a 3d 46 00 50 4b";
const char FIRST_PACKET[] = "65 00 00 00 00 30 31 32 33 34 35 36 37 e5 c7";
const char LAST_CHECK[] = "64 00 00 00 00 00 00 00 14 54 cc ef 29 01 2c 88";
const char SAME[] = "64 00 2b 70";
const char DIFFERENT[] = "64 01 ea b0";
const char WRITTEN[] = "65 00 2a e0";
const char REFUSED[] = "65 01 eb 20";

class Modules : public testing::Test
{
protected:
    QStringList small_module(const QStringList& more = {}) const
    {
        return QStringList{"boot",       "--page",    "16",          "--mtu",    "8",
                           "--firmware", "2.3.4.5.6", "--hard-info", "deadbeef", "--start-time",
                           "0",          "--image",   image} +
               more;
    }

    Sandbox sandbox;
    QString image = QDir::currentPath() + "/image.bin";
};

TEST_F(Modules, BootTakesAFileOverEachTransport)
{
    for (const QStringList& transport : {QStringList{}, QStringList{"--listen", "0"}}) {
        QFile::remove(image);
        Simulated boot(small_module(transport));
        Wire wire(boot.address);
        expect_steps(wire, {
                               {ASK, IN_APPLICATION},
                               {FIRST_CHECK, ""}, // the application knows no such thing
                               {"62 3e a8", ""},  // and takes no broken frame
                               {ENTER_BOOT, ""},
                               {ASK, IN_BOOT},
                               {FIRST_CHECK, DIFFERENT},
                               {FIRST_PACKET, WRITTEN},
                               {"65 00 00 00 08 38 39 3a 3b 3c 3d 3e 3f 6f 4c", WRITTEN},
                               {FIRST_CHECK, SAME},
                               {"64 00 00 00 10 00 00 00 04 19 6d a2 84 00 0d 38", DIFFERENT},
                               {LAST_CHECK, DIFFERENT},
                               {"65 00 00 00 10 40 41 42 43 68 e4", WRITTEN},
                               {LAST_CHECK, SAME},
                               {REBOOT, ""},
                               {ASK, IN_APPLICATION},
                           });
        EXPECT_EQ(content(image), "0123456789:;<=>?@ABC");
    }
}

TEST_F(Modules, TheLastCheckCutsALongerImageAndPacketsOutOfBoundsAreRefused)
{
    QFile old(image);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("0123456789:;<=>?@ABCDEFGH");
    old.close();
    Simulated boot(small_module({"--boot"}));
    Wire wire(boot.address);
    expect_steps(wire, {
                           {"65 00 00 00 00 aa aa aa aa aa aa aa aa aa 37 fb", REFUSED}, // > MTU
                           {"65 00 0f ff fd 01 02 03 04 ba 76", REFUSED}, // beyond the memory
                           {"65 00 00 00 00 68 08", REFUSED},             // nothing
                           {LAST_CHECK, SAME},
                       });
    EXPECT_EQ(content(image), "0123456789:;<=>?@ABC");
}

TEST_F(Modules, FramesOfEachKind)
{
    const struct
    {
        const char* frame;
        std::vector<Step> steps;
    } rows[] = {
        {"none", {{"61", "61 00 00 01 00 00 00 00 10 00 04 00"}, {"61 61", ""}}},
        {"rtu:7", {{"07 61 c2 68", "07 61 00 00 01 00 00 00 00 10 00 04 00 7e 7f"}, {ASK, ""}}},
        {"chan:1234",
         {{"12 34 61", "12 34 61 00 00 01 00 00 00 00 10 00 04 00"}, {"12 35 61", ""}}},
        {"rwlt", {{"ab 61 ba", "ab 61 00 00 01 00 00 00 00 10 00 04 00 ba"}, {"ab 61 bb", ""}}},
    };
    for (const auto& row : rows) {
        Simulated boot({"boot", "--module", "", "--frame", row.frame});
        Wire wire(boot.address);
        expect_steps(wire, row.steps);
    }
}

TEST_F(Modules, AFailingSupplyLeavesTheBootCodeOnlyWhenTheFirmwareIsBroken)
{
    {
        Simulated boot(small_module({"--reboot-after", "2"}));
        Wire wire(boot.address);
        expect_steps(wire, {{ENTER_BOOT, ""}, {ASK, ""}, {ASK, IN_APPLICATION}});
    }
    Simulated boot(small_module({"--reboot-after", "3"}));
    Wire wire(boot.address);
    expect_steps(wire, {{ENTER_BOOT, ""}, {FIRST_PACKET, WRITTEN}, {ASK, ""}, {ASK, IN_BOOT}});
}

TEST_F(Modules, ACutLineIsLostOnceAndCanBeOpenedAgain)
{
    for (const QStringList& transport : {QStringList{}, QStringList{"--listen", "0"}}) {
        Simulated boot(small_module(transport + QStringList{"--cut-after", "2"}));
        {
            Wire wire(boot.address);
            expect_steps(wire, {{ENTER_BOOT, ""}});
            wire.write_some(QByteArray::fromHex(ASK));
            EXPECT_TRUE(wait_until([&] { return hung_up(wire); }));
        }
        std::unique_ptr<Wire> again;
        ASSERT_TRUE(wait_until([&] {
            again = std::make_unique<Wire>(boot.address);
            return again->is_open();
        }));
        expect_steps(*again, {{ASK, IN_BOOT}});
    }
}

TEST_F(Modules, FaultsMeetFramesAndRepeatWithTheirSeed)
{
    QByteArray heard[3];
    const char* const seeds[] = {"1", "1", "2"};
    for (int i = 0; i < 3; ++i) {
        Simulated boot({"boot", "--drop", "0.2", "--corrupt", "0.2", "--silent-after", "25",
                        "--seed", seeds[i]});
        Wire wire(boot.address);
        for (int n = 0; n < 60; ++n)
            heard[i] += wire.exchange(QByteArray::fromHex(ASK), 17, 20) + '\n';
    }
    EXPECT_EQ(heard[0], heard[1]);
    EXPECT_NE(heard[0], heard[2]);
    EXPECT_TRUE(heard[0].endsWith("\n\n\n\n\n\n"));
    EXPECT_GT(heard[0].count("M1"), 8);
    EXPECT_LT(heard[0].count("M1"), 25);
}

TEST_F(Modules, AnswersKeepThePaceAndTheDelay)
{
    Simulated boot({"boot", "--boot", "--baud", "9600", "--delay", "100", "--verbose"});
    Wire wire(boot.address);
    QElapsedTimer clock;
    clock.start();
    expect_steps(wire, {{FIRST_CHECK, DIFFERENT}});
    EXPECT_GE(clock.elapsed(), 100 + 20 * 10 * 1000 / 9600);

    boot.end();
    const QByteArray told = boot.process.readAllStandardError();
    for (const char* line : {"boot: < 64 00 00 00 00 00 00 00 10 7f 8a 3d 46 00 50 4b\n",
                             "boot: check of 16 bytes at 0: different\n", "boot: > 64 01 ea b0\n"})
        EXPECT_TRUE(told.contains(line)) << told.constData();
}

TEST_F(Modules, CnetIsConfiguredAndSearched)
{
    Simulated cnet({"cnet", "--address", "0x0102", "--device", "12,1,0x1234", "--device",
                    "12,1,0x1235", "--device", "13,1,0x1236"});
    Wire wire(cnet.address);
    const QByteArray zero_block(52 * 2, '0');
    const QByteArray set = "ab d3 12 34 00 34" + zero_block + "ba";
    const QByteArray wrong_set = "ab d3 12 34 00 35" + zero_block + "ba";
    const QByteArray got = "ab d2 12 34 00 34" + zero_block + "01 02 03 04 05 ba";
    expect_steps(wire,
                 {
                     {"ab d1 ba", "ab d1 01 02 09 00 01 02 03 ba"},
                     {"ab 61 ba", "ab 61 00 c0 ff ee 00 00 01 02 01 02 09 00 01 02 03 ba"},
                     {"ab d5 ba", ""}, // nobody on this channel
                     {"ab d4 0c 03 ba", "ab d4 01 ba"},
                     {"ab d4 1f 01 ba", "ab d4 01 ba"},
                     {"ab d4 0c 01 ba", "ab d4 00 ba"},
                     {"ab d5 ba", "ab d5 12 34 ce 0c 01 ba ab d5 12 35 cd 0c 01 ba"},
                     {"ab d6 12 35 ba", "ab d6 12 35 cd 0c 01 ba"},
                     {"ab d6 12 36 ba", ""},
                     {"ab 66 12 34 ba", "ab 66 00 c0 ff ee 00 00 12 34 12 34 ce 0c 01 ba"},
                     {set.constData(), "ab d3 12 34 00 ba"},
                     {wrong_set.constData(), "ab d3 12 34 01 ba"},
                     {"ab d2 12 34 00 34 ba", got.constData()},
                     {"ab d2 12 36 00 34 ba", ""},
                     {"ab dc 12 34 ba", "ab dc 12 34 28 ba"},
                     {"ab 6c 00 c0 ff ee 00 00 12 34 ba", "ab 6c 00 c0 ff ee 00 00 12 34 28 d8 ba"},
                     {"ab d7 12 34 00 01 ba", ""},
                     {"ab 99 ba", ""},
                     {"aa 05 d1 12 34 ba 55 55", "aa 01 00 55 aa 05 d1 12 34 ba 55 55"},
                     {"aa 04 d1 12 36 00 55", "aa 01 8a 55"},
                 });
}

TEST_F(Modules, DorvAnswersItsCommands)
{
    Simulated dorv({"dorv", "--partner", "--start-time", "0"});
    Wire wire(dorv.address);
    const QByteArray key = "00112233445566778899aabbccddeeff";
    expect_words(
        wire,
        {
            {"+++", "ok\r\n"},
            {"at+mode=?", "radio\r\n"},
            {"at+mode=pmac", "ok\r\n"},
            {"at+mode=wifi", "error\r\n"},
            {"at+sf=255", "ok\r\n"},
            {"at+sf=256", "error\r\n"},
            {"at+freq=4294967295", "ok\r\n"},
            {"at+freq=?", "4294967295\r\n"},
            {"at+bw=31.25", "ok\r\n"},
            {"at+cr=4/9", "error\r\n"},
            {"at+uartcfg=115200,8,e,1", "ok\r\n"},
            {"at+sleep=deep,1,level,low", "ok\r\n"},
            {"at+sleep=off,1,timeout,65535", "ok\r\n"},
            {"at+pwrid=-128", "ok\r\n"},
            {"at+pwrid=-129", "error\r\n"},
            {"at+ch=255,4294967295,1,5", "ok\r\n"},
            {"at+devaddr=0xffffffff", "ok\r\n"},
            {"at+devaddr=?", "0xffffffff\r\n"},
            {"at+heartbeat=1,2,65535", "ok\r\n"},
            {"at+heartbeat=?", "1,2,65535\r\n"},
            {"at+deveui=?", "0011223344556677\r\n"},
            {"at+appkey=" + key, "ok\r\n"},
            {"at+appkey=" + key.left(31), "error\r\n"},
            {"at+appkey=?", "error\r\n"},
            {"at+appkey=?xyz.quendal.zz", key + "\r\n"},
            {"at+nwkskey=abp," + key, "ok\r\n"},
            {"at+nwkskey=?abp,xyz.quendal.zz", key + "\r\n"},
            {"at+rssi=0x10", "+rssi,-56\r\n"},
            {"at+pmactx=ucast,16,communication quality", "ok\r\n16,-56.5,7.25,10,-56.0,6.5,0\r\n"},
            {"at+colour=red", "error\r\n"},
            {"at+radiotx=2\ra", "ok\r\n+radiorx=2\r\na\r"}, // the CR behind it is payload
            {"at+mac_send=1\r", "ok\r\n+data=1\r\n\r"},
            {"at+radiotxraw=3\rab", "ok\r\n+radiorx=-61,7.5,61620D\r\n"},
            {"at+rxfmt=hex", "ok\r\n"},
            {"at+radiotx=1\r", "ok\r\n+radiorx=-61,7.5,0D\r\n"},
        });
}

TEST_F(Modules, DorvRemembersUntilItIsReset)
{
    const QString file = QDir::currentPath() + "/settings";
    const QStringList arguments = {"dorv", "--settings", file, "--start-time", "0"};
    {
        Simulated dorv(arguments);
        Wire wire(dorv.address);
        expect_words(wire, {{"at+echo=on", "ok\r\n"}, {"at+sf=12", "at+sf=12\r\r\nok\r\n"}});
    }
    Simulated dorv(arguments);
    Wire wire(dorv.address);
    expect_words(wire, {{"at+echo=off", "at+echo=off\r\r\nok\r\n"},
                        {"at+sf=?", "12\r\n"},
                        {"at+reboot", "ok\r\n"},
                        {"at+sf=?", "12\r\n"},
                        {"at+def", "ok\r\n"},
                        {"at+sf=?", "7\r\n"}});
    dorv.end();
    EXPECT_TRUE(content(file).contains("sf=7\n"));
    QFile broken(file);
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("sf=7\nsf=lots\n");
    broken.close();
    Simulated refused(arguments);
    EXPECT_EQ(refused.wait_for_exit(), 1);
    EXPECT_TRUE(refused.process.readAllStandardError().contains("line 2, \"sf=lots\""));
}

TEST_F(Modules, DorvNeighboursAnnounceThemselves)
{
    Simulated dorv({"dorv", "--neighbours", "2"});
    Wire wire(dorv.address);
    QByteArray text;
    EXPECT_TRUE(wait_until([&] {
        text += wire.read_some();
        return text.contains("+devfound,125,7,0x1,-41\r\n") &&
               text.contains("+devfound,125,7,0x2,-42\r\n");
    })) << text.constData();
}

TEST_F(Modules, AWrongCommandLineIsExplained)
{
    const struct
    {
        QStringList arguments;
        const char* said;
    } rows[] = {
        {{"boot", "--frame", "rtu:256"}, "--frame rtu:256"},
        {{"boot", "--frame", "chan:123"}, "--frame chan:123"},
        {{"boot", "--firmware", "1.2.3.4.5.6"}, "--firmware"},
        {{"cnet", "--device", "8,0,1"}, "--device 8,0,1"},
        {{"cnet", "--device", "9,,1"}, "--device 9,,1"},
        {{"dorv", "--image", "x"}, "image"},
    };
    for (const auto& row : rows) {
        Simulated simulated(row.arguments);
        EXPECT_EQ(simulated.wait_for_exit(), 2) << row.said;
        EXPECT_TRUE(simulated.process.readAllStandardError().contains(row.said)) << row.said;
    }
}
} // namespace
