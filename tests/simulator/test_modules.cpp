// boot, cnet and dorv, byte by byte, and what the line does to them.
#include "simulated.h"
#include "wire.h"

#include <memory>

namespace {
constexpr int SILENCE_MS = 150; // an answer that has not begun by then is none

// A request and its answer, both as hexadecimal text; an empty answer means silence.
using Step = std::pair<QByteArray, QByteArray>;

// The simulator is verbose.
void expect_steps(Simulated& simulated, Wire& wire, const std::vector<Step>& steps)
{
    int requests = simulated.err.count(": < ");
    for (const auto& [request, answer] : steps) {
        wire.write_some(QByteArray::fromHex(request));
        ++requests;
        // The next one could be taken for a part of this one before.
        EXPECT_TRUE(wait_until([&] {
            simulated.err += simulated.process.readAllStandardError();
            return simulated.err.count(": < ") == requests;
        }));
        const int size = qMax(1, int(QByteArray::fromHex(answer).size()));
        const QByteArray came = wire.read(size, answer.isEmpty() ? SILENCE_MS : PATIENCE_MS);
        ASSERT_EQ(came.toHex(), QByteArray(answer).replace(" ", "")) << request.constData();
    }
}

const QString SMALL_MODULE = "boot --page 16 --mtu 8 --firmware 2.3.4.5.6 --hard-info deadbeef "
                             "--start-time 0 --image image.bin --verbose";

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

using Modules = ProgramTest; // its working directory takes the image

TEST_F(Modules, BootTakesAFileAndReportsWhatItDoes)
{
    file_write("image.bin", "an image longer than the new one");
    Simulated boot(SMALL_MODULE);
    Wire wire(boot.address);
    const std::vector<Step> steps = {
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
        {"65 00 00 00 00 aa aa aa aa aa aa aa aa aa 37 fb", REFUSED}, // > MTU
        {"65 00 0f ff fd 01 02 03 04 ba 76", REFUSED},                // beyond the memory
        {"65 00 00 00 00 68 08", REFUSED},                            // nothing
        {"65 00 00 00 10 40 41 42 43 68 e4", WRITTEN},
        {LAST_CHECK, SAME},
        {REBOOT, ""},
        {ASK, IN_APPLICATION},
    };
    expect_steps(boot, wire, steps);
    EXPECT_EQ(file_content("image.bin"), "0123456789:;<=>?@ABC");
    boot.end();
    for (const char* line : {"boot: < 64 00 00 00 00 00 00 00 10 7f 8a 3d 46 00 50 4b\n",
                             "boot: 4 bytes at 1048573: refused: beyond the memory of 1048576",
                             "boot: check of 16 bytes at 0: different\n", "boot: > 64 01 ea b0\n"})
        EXPECT_TRUE(boot.err.contains(line)) << boot.err.constData();
}

TEST_F(Modules, AnswerInTheirFramesAndRestartWhenTheirSupplyFails)
{
    const QByteArray wrong_block = "ab d3 12 34 00 35" + QByteArray(52 * 2, '0') + "ba";
    const std::pair<QString, std::vector<Step>> rows[] = {
        {"boot --module= --frame none",
         {{"61", "61 00 00 01 00 00 00 00 10 00 04 00"}, {"61 61", ""}}},
        {"boot --module= --frame rtu:7",
         {{"07 61 c2 68", "07 61 00 00 01 00 00 00 00 10 00 04 00 7e 7f"}, {ASK, ""}}},
        {"boot --module= --frame chan:1234",
         {{"12 34 61", "12 34 61 00 00 01 00 00 00 00 10 00 04 00"}, {"12 35 61", ""}}},
        {"boot --module= --frame rwlt",
         {{"ab 61 ba", "ab 61 00 00 01 00 00 00 00 10 00 04 00 ba"}, {"ab 61 bb", ""}}},
        // Back in the application, unless that is broken
        {SMALL_MODULE + " --reboot-after 2", {{ENTER_BOOT, ""}, {ASK, ""}, {ASK, IN_APPLICATION}}},
        {SMALL_MODULE + " --reboot-after 3",
         {{ENTER_BOOT, ""}, {FIRST_PACKET, WRITTEN}, {ASK, ""}, {ASK, IN_BOOT}}},
        {"boot --boot --double 1", {{FIRST_CHECK, QByteArray(DIFFERENT).repeated(4)}}}, // both ways
        {"boot --boot --reorder 1",
         {{FIRST_CHECK, ""}, {FIRST_PACKET, QByteArray(DIFFERENT) + WRITTEN}}},
        {"cnet --address 0x0102 --device 12,1,0x1234 --device 12,1,0x1235 --device 12,0,0x1236",
         {{"ab d1 ba", "ab d1 01 02 09 00 01 02 03 ba"},
          {"ab 61 ba", "ab 61 00 c0 ff ee 00 00 01 02 01 02 09 00 01 02 03 ba"},
          {"ab d5 ba", ""}, // nobody on this channel
          {"ab d4 0c 03 ba", "ab d4 01 ba"},
          {"ab d4 1f 01 ba", "ab d4 01 ba"},
          {"ab d4 0c 01 ba", "ab d4 00 ba"},
          {"ab d5 ba", "ab d5 12 34 ce 0c 01 ba ab d5 12 35 cd 0c 01 ba"},
          {"ab d6 12 35 ba", "ab d6 12 35 cd 0c 01 ba"},
          {"ab 66 12 34 ba", "ab 66 00 c0 ff ee 00 00 12 34 12 34 ce 0c 01 ba"},
          {wrong_block, "ab d3 12 34 01 ba"},
          {"ab d2 12 36 00 34 ba", ""},
          {"ab 6c 00 c0 ff ee 00 00 12 34 ba", "ab 6c 00 c0 ff ee 00 00 12 34 28 d8 ba"},
          {"ab d7 12 34 00 01 ba", ""},
          {"aa 05 d1 12 34 ba 55 55", "aa 01 00 55 aa 05 d1 12 34 ba 55 55"},
          {"aa 04 d1 12 36 00 55", "aa 01 8a 55"}}},
    };
    for (const auto& [command, steps] : rows) {
        SCOPED_TRACE(command.toStdString());
        Simulated simulated(command + " --verbose");
        Wire wire(simulated.address);
        expect_steps(simulated, wire, steps);
    }
}

TEST_F(Modules, ACutLineIsLostOnceAndCanBeOpenedAgain)
{
    for (const QString transport : {"", " --listen 0"}) {
        Simulated boot(SMALL_MODULE + " --cut-after 2" + transport);
        auto wire = std::make_unique<Wire>(boot.address);
        expect_steps(boot, *wire, {{ENTER_BOOT, ""}, {ASK, ""}});
        EXPECT_TRUE(wait_until([&] {
            char byte = 0;
            return ::read(wire->fd, &byte, 1) == 0 || errno == EIO;
        }));
        EXPECT_TRUE(wait_until([&] {
            wire = std::make_unique<Wire>(boot.address);
            return wire->fd >= 0;
        }));
        expect_steps(boot, *wire, {{ASK, IN_BOOT}});
    }
}

TEST_F(Modules, DorvAnswersItsCommandsAndRemembersUntilItIsReset)
{
    const QByteArray key = "00112233445566778899aabbccddeeff";
    const QString remembering = "dorv --start-time 0 --settings settings";
    const std::pair<QString, std::vector<Step>> rows[] = {
        {"dorv --partner",
         {
             {"+++", "ok\r\n"},
             {"at+mode=?", "radio\r\n"},
             {"at+mode=pmac", "ok\r\n"},
             {"at+mode=wifi", "error\r\n"},
             {"at+colour=red", "error\r\n"},
             {"at+sf=255", "ok\r\n"},
             {"at+sf=256", "error\r\n"},
             {"at+freq=4294967295", "ok\r\n"},
             {"at+pwrid=-129", "error\r\n"},
             {"at+ch=255,4294967295,1,5", "ok\r\n"},
             {"at+sleep=off,1,timeout,65535", "ok\r\n"},
             {"at+appkey=" + key, "ok\r\n"},
             {"at+appkey=" + key.left(31), "error\r\n"},
             {"at+appkey=?", "error\r\n"},
             {"at+appkey=?xyz.quendal.zz", key + "\r\n"},
             {"at+nwkskey=abp," + key, "ok\r\n"},
             {"at+nwkskey=?abp,xyz.quendal.zz", key + "\r\n"},
             {"at+rssi=0x10", "+rssi,-56\r\n"},
             {"at+pmactx=ucast,16,communication quality", "ok\r\n16,-56.5,7.25,10,-56.0,6.5,0\r\n"},
             {"at+radiotx=2\ra", "ok\r\n+radiorx=2\r\na\r"}, // the CR after it is payload
             {"at+mac_send=1\r", "ok\r\n+data=1\r\n\r"},
             {"at+radiotxraw=3\rab", "ok\r\n+radiorx=-61,7.5,61620D\r\n"},
             {"at+rxfmt=hex", "ok\r\n"},
             {"at+radiotx=1\r", "ok\r\n+radiorx=-61,7.5,0D\r\n"},
         }},
        {remembering, {{"at+echo=on", "ok\r\n"}, {"at+sf=12", "at+sf=12\r\r\nok\r\n"}}},
        {remembering,
         {{"at+echo=off", "at+echo=off\r\r\nok\r\n"},
          {"at+reboot", "ok\r\n"},
          {"at+sf=?", "12\r\n"},
          {"at+def", "ok\r\n"},
          {"at+sf=?", "7\r\n"}}},
    };
    for (const auto& [command, steps] : rows) {
        Simulated dorv(command);
        Wire wire(dorv.address);
        for (const auto& [request, answer] : steps)
            ASSERT_EQ(wire.exchange(request + '\r', int(answer.size())), answer)
                << request.constData();
    }
    EXPECT_TRUE(file_content("settings").contains("sf=7\n"));
    file_write("settings", "sf=7\nsf=lots\n");
    Simulated refused(remembering);
    EXPECT_EQ(refused.wait(), 1);
    EXPECT_TRUE(refused.err.contains("line 2, \"sf=lots\""));
}
} // namespace
