// The blocks of a capture: against plain bytes, and against tshark.
#include "captures.h"
#include "print.h"
#include "sandbox.h"

#include <gmock/gmock.h>

namespace {

constexpr std::int64_t TIME = 1764000000123456789;

PcapngInterface known_port()
{
    PcapngInterface port;
    port.name = "ttyUSB0";
    port.description = "115200,8N1";
    port.speed = 115200;
    return port;
}

QList<CaptureRecord> known_records()
{
    CaptureRecord opened = CaptureRecord::remark(TIME, "opened");
    opened.lines = CAPTURE_DTR | CAPTURE_RTS;
    CaptureRecord sent = CaptureRecord::sent(TIME + 1000, QByteArray("\x01\x03\0", 3));
    CaptureRecord received = CaptureRecord::received(TIME + 2500000, "ok\r\n");
    CaptureRecord lost = CaptureRecord::received(TIME + 3000000, {});
    sent.lines = received.lines = lost.lines = CAPTURE_DTR | CAPTURE_RTS | CAPTURE_CTS;
    lost.event = CaptureEvent::DataLost;
    lost.lost = 4096;
    return {opened, sent, received, lost};
}

TEST(Pcapng, BuildsTheKnownFile)
{
    PcapngSection section;
    section.system = "Debian 12";
    section.application = "Tarnwick 1";
    section.comments = QStringList("crc16");
    QByteArray file = section.build() + known_port().build();
    for (const CaptureRecord& record : known_records())
        file += packet_of(record).build();
    EXPECT_EQ(file.toHex(), known_file().toHex());
}

TEST(Pcapng, ReadsBothByteOrders)
{
    for (const auto order : {PcapngOrder::Little, PcapngOrder::Big})
        EXPECT_EQ(read_records(known_file(order)), known_records());
    const auto port = PcapngInterface::parse(
        *PcapngBlock::parse(known_blocks(PcapngOrder::Big)[1], PcapngOrder::Big).value);
    EXPECT_EQ(port.value->build(), known_port().build());
}

TEST(Pcapng, IsWhatTsharkReads)
{
    const Sandbox sandbox;
    file_write(sandbox.path("known.pcapng"), known_file());
    const QStringList lines = {
        "ttyUSB0 1764000000.123456789 12 12 0x00000000 0x00 0 1 1764000000.123456000  opened",
        "ttyUSB0 1764000000.123457789 15 15 0x00000002 0x01 1 1 1764000000.123457000 010300 ",
        "ttyUSB0 1764000000.125956789 16 16 0x00000001 0x02 1 1 1764000000.125956000 6f6b0d0a ",
        "ttyUSB0 1764000000.126456789 4108 12 0x00000001 0x05 1 1 1764000000.126456000  ",
    };
    EXPECT_EQ(tshark(sandbox.path("known.pcapng"),
                     "frame.interface_name frame.time_epoch frame.len frame.cap_len "
                     "frame.packet_flags rtacser.eventtype rtacser.cts rtacser.dtr "
                     "rtacser.timestamp data.data frame.comment"),
              lines);
}

TEST(Pcapng, TurnsTimeStampsOfAllResolutionsIntoNanoseconds)
{
    const std::int64_t none = -1;
    const std::uint64_t all = std::numeric_limits<std::uint64_t>::max();
    struct
    {
        int resolution;
        std::int64_t offset_s;
        std::uint64_t stamp;
        std::int64_t ns;
    } const rows[] = {
        {6, 0, 1764000000123456, 1764000000123456000},
        {0, 0, 3, 3000000000},
        {9, -1, 1500000000, 500000000},
        {12, 0, 1500000000999, 1500000000},
        {0x80 | 1, 0, 3, 1500000000},
        {0x80 | 32, 1, 0x180000000, 2500000000},
        {0x80 | 63, 0, all, 1999999999},
        {9, -2, 1500000000, none},
        {9, 0, all, none},
        {6, 0, all, none},
        {19, 0, all, 1844674407},
        {9, std::int64_t(all >> 1), 0, none},
    };
    for (const auto& row : rows) {
        PcapngInterface port;
        port.resolution = std::uint8_t(row.resolution);
        port.time_offset_s = row.offset_s;
        EXPECT_EQ(port.nanoseconds(row.stamp).value_or(none), row.ns) << row.resolution;
    }
}

TEST(Pcapng, CutsACommentThatIsTooLongAtACharacter)
{
    const QString comment = 'x' + QString(40000, QChar(0xE9)); // two bytes each
    const QByteArray block = packet_of(CaptureRecord::remark(0, comment)).build();
    const auto packet = PcapngPacket::parse(*PcapngBlock::parse(block, PcapngOrder::Little).value);
    EXPECT_EQ(packet.value->comments, QStringList(comment.left(32768)));
}

} // namespace
