// What the shell shows of captures.
#include "captures.h"
#include "cli/framecheck.h"
#include "ctl.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

constexpr std::int64_t SECOND = 1000000000;

TEST(FrameCheck, SaysWhichFramerRefusesAFrame)
{
    const auto in = CaptureDirection::Inbound;
    const auto out = CaptureDirection::Outbound;
    struct
    {
        const char* framers;
        CaptureDirection direction;
        QByteArray frame;
        const char* verdict;
        const char* payload;
    } const rows[] = {
        {"none", in, "ok", "good", "ok"},
        {"crc16", in, "hi\xEE\x5E", "good", "hi"},
        {"crc16", in, "hi\xEE\x5D", "crc16: the CRC is wrong", "hi\xEE\x5D"},
        {"rtu:7", in, "\x07hi\x2F\xEF", "good", "hi"},
        {"rtu:8", in, "\x07hi\x2F\xEF", "rtu:8: of address 7", "\x07hi\x2F\xEF"},
        {"chan:6869", in, "hiyo", "good", "yo"},
        {"crc16+chan:67", in, "hi\xEE\x5E", "chan:67: another prefix", "hi"},
        {"rwlt", in, "\xABhi\xBA", "good", "hi"},
        {"rwlt", in, "\xABhi", "rwlt: no start or no end", "\xABhi"},
        {"cnet:1234", in, "\xAA\x05\xD1\x12\x34hi\x55", "good", "hi"},
        {"cnet:1235", in, "\xAA\x05\xD1\x12\x34hi\x55", "cnet:1235: of 1234", nullptr},
        {"cnet:1234", in, "\xAA\x01\x40\x55", "local response 64", ""},
        {"dorv", out, "at+radiotx=2\rhi", "good", "hi"},
        {"dorv", out, "at+radiotx=3\rhi", "dorv: no send command", nullptr},
        {"dorv", in, "+radiorx:2\r\nhi", "good", "hi"},
        {"dorv", in, "ok\r\n", "dorv: no report", nullptr},
        {"dorv:raw", in, "+radiorx:-40,7,6869\r\n", "good", "hi"},
    };
    for (const auto& row : rows) {
        const FrameVerdict verdict =
            check_frame(parse_framers(QString(row.framers)), row.direction, row.frame);
        EXPECT_EQ(verdict.text, row.verdict);
        if (row.payload != nullptr) {
            EXPECT_EQ(verdict.payload, QByteArray(row.payload)) << row.framers;
        }
        EXPECT_EQ(verdict.good, !verdict.text.contains(": ")) << row.framers;
    }
}

class CaptureCommands : public testing::Test
{
protected:
    const Sandbox sandbox;

    // Requests and answers a second apart, as "> text" and "< text", in pieces of two bytes.
    static void session(const QString& name, const QStringList& frames)
    {
        QByteArray file = known_blocks(PcapngOrder::Little).mid(0, 2).join();
        std::int64_t time = 1764000000 * SECOND;
        for (const QString& frame : frames) {
            const QByteArray bytes = frame.mid(2).toUtf8();
            time += SECOND;
            for (int i = 0; i < bytes.size(); i += 2)
                file +=
                    packet_of(frame[0] == '>' ? CaptureRecord::sent(time + i, bytes.mid(i, 2))
                                              : CaptureRecord::received(time + i, bytes.mid(i, 2)))
                        .build();
        }
        file_write(name, file);
    }
};

TEST_F(CaptureCommands, ShowWhatIsAskedFor)
{
    qputenv("TZ", "UTC");
    session("s", {"> ask", "< one", "> ask", "< 1\xC3\xA9\r\n\x1b[2J"});
    QByteArray odd = PcapngSection().build();
    PcapngInterface port;
    port.name = "tty\n\x1b]0;x\x07";
    odd += port.build() + packet_of(CaptureRecord::remark(0, "a\n\x1b[2Jb")).build();
    file_write("odd", odd);
    file_write("two", known_file() + odd.replace(8, 4, "????"));
    file_write("torn", known_file().left(430));
    file_write("bad", known_file().replace("ok\r\n", "OK\r\n"));
    file_write("text", "some notes");
    struct
    {
        const char* command;
        int exit;
        const char* text; // in the output or the errors
    } const rows[] = {
        {"info s", 0, "received  12 bytes\nsent      6 bytes\n"},
        {"info bad", 0, "damaged   1 place;"},
        {"info text", 6, "text is no capture"},
        {"info .", 6, "can't be read"},
        {"verify s", 0, "s is good: 11 records in"},
        {"verify torn", 6, "torn is damaged in 1 place; it is good up to byte 372 of 430"},
        {"verify bad", 6, "damaged at byte 300, 72 bytes: the bytes of the packet"},
        {"print s --records 3-3", 0, "2025-11-24T16:00:02.000000 < 6F 6E\n"},
        {"print s --gap 5 --from 1 --to 1.5", 0, "16:00:02.000000 < 6F 6E 65  \"one\"\n"},
        {"print s --frame chan:61 --records 1-2", 0, "> 61 73 6B  \"ask\"  | good: 73 6B\n"},
        {"print s --to 9999-12-31", 0, "< 6F 6E\n"},
        {"print s --port other", 2, "s has no port other"},
        {"print text", 6, "text is no capture"},
        {"print odd", 0, "* -  # a\\n\\u001b[2Jb\n"},
        {"info odd", 0, "port      tty\\n\\u001b]0;x\\u0007\n"},
        {"print torn", 0, "torn: damaged at byte 372, 58 bytes"},
        {"print s --from nine", 2, "--from nine is no time"},
        {"print s --records 5-2", 2, "ends ahead of its start"},
        {"print s --direction up", 2, "sent, received, all"},
        {"export s --direction received", 0, "one1\xC3\xA9\r\n\x1b[2J"},
        {"export s --direction received --as text", 0, "one1\xC3\xA9\n\\u001b[2J"},
        {"export s --as csv --records 1", 0,
         "\n1,1764000001000000000,2025-11-24T16:00:01.000000,\"ttyUSB0\",sent,sent,6173,0,\"\"\n"},
        {"cut s bad", 6, "bad is there already"},
        {"cut torn whole", 0, "whole: 3 records"},
        {"verify whole", 0, "whole is good: 3 records"},
        {"cut two parted", 0, "parted: 5 records"},
        {"print parted --json --records 5", 0, "tty\\n"},
        {"cut s late --from 2", 0, "late: 7 records"},
        {"export late --direction sent", 0, "ask"},
    };
    for (const auto& row : rows) {
        const CtlRun result(QString("capture ") + row.command);
        EXPECT_EQ(result.exit, row.exit) << row.command << result.err.toStdString();
        EXPECT_THAT((result.out + result.err).toStdString(), HasSubstr(row.text)) << row.command;
    }
    EXPECT_EQ(ctl_json("capture verify torn")["good_bytes"].toInt(), 372);
    const QJsonObject printed = ctl_json("capture print s --gap 5 --from 0 --to 0.5 --frame none");
    EXPECT_EQ(printed["time_ns"].toString(), "1764000001000000000");
    EXPECT_EQ(printed["payload"].toString(), "61 73 6B");
}

TEST_F(CaptureCommands, FindTheFirstExchangeThatDiffers)
{
    session("a", {"> ask1", "< one", "> ask2", "< two", "> ask3", "< three"});
    session("same", {"> ask1", "< one", "> ask2", "< two", "> ask3", "< three"});
    session("other", {"> ask1", "< one", "> ask2", "< twx", "> ask3", "< three"});
    session("retry", {"> ask1", "< one", "> ask2", "> ask2", "< two", "> ask3", "< three"});
    session("short", {"> ask1", "< one", "> ask2"});
    struct
    {
        const char* command;
        int exit;
        QStringList shown;
        const char* how;
    } const rows[] = {
        {"a same", 0, {}, "no difference in 6 frames"},
        {"a other", 1, {"    ask2", "  A two", "  B twx"}, "after 3 frames: one frame is"},
        {"a other --ignore bytes:2-9", 0, {}, "no difference in 6 frames"},
        {"a other --ignore bytes:0-1", 1, {"    ask2", "  A two", "  B twx"}, "another"},
        {"a other --ignore hex:7477", 0, {}, "no difference in 5 frames"},
        {"a other --ignore received", 0, {}, "no difference in 3 frames"},
        {"a other --frame chan:74", 1, {"    ask2", "  A two", "  B twx"}, "another"},
        {"a retry", 1, {"    ask2", "  B ask2"}, "B has 1 frame more there"},
        {"retry a", 1, {"    ask2", "  A ask2"}, "A has 1 frame more there"},
        {"a short", 1, {"    ask2", "  A two", "  B ends here"}, "B ends there"},
        {"a a --ignore time", 2, {}, "--ignore time is unknown"},
        {"a none", 6, {}, "none can't be read"},
    };
    for (const auto& row : rows) {
        const CtlRun result(QString("capture diff ") + row.command);
        EXPECT_EQ(result.exit, row.exit) << row.command << result.err.toStdString();
        EXPECT_THAT((result.out + result.err).toStdString(), HasSubstr(row.how)) << row.command;
        QStringList shown; // whose it is, and the text of the frame
        for (const QString& line : QString(result.out).split('\n').mid(1))
            if (line.startsWith("  "))
                shown +=
                    line.left(4) + (line.contains('"') ? line.section('"', 1, 1) : line.mid(4));
        EXPECT_EQ(shown, row.shown) << row.command;
    }
}

TEST(Recording, ThatLacksBytesIsReportedAfterTheWorkIsDone)
{
    const Sandbox sandbox;
    const Simulated echo("echo");
    const QString bytes = QString("55").repeated(900);
    const QString command = "frame exchange --record r --hex " + bytes + " --link serial:echo";
    EXPECT_EQ(CtlRun(command).exit, 0);
    const FullAt full(QFileInfo("r").size() + 500);
    const CtlRun run(command);
    EXPECT_EQ(run.exit, 6);
    EXPECT_TRUE(run.out.startsWith("55 55")) << run.out.toStdString();
    EXPECT_TRUE(run.err.contains("r lacks ")) << run.err.toStdString();
}

} // namespace
