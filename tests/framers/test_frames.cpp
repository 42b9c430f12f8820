// The framers that wrap payload in a frame: transcripts in plain bytes, and what becomes of frames
// that aren't right.
#include "framers/framebuffer.h"
#include "framers/qframernull.h"
#include "layers.h"
#include "memorylink.h"

#include <climits>
#include <gtest/gtest.h>

static int frames_on_heap = 0;

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    ++frames_on_heap;
    return ::operator new[](size);
}

namespace {

TEST(Frames, AreTheKnownBytes)
{
    const struct
    {
        Kind kind;
        QByteArray payload;
        QByteArray frame;
    } rows[] = {
        {CRC16, "123456789", "313233343536373839374B"_hex},
        {CRC16, "", "FFFF"_hex},
        {RTU, "0300000001"_hex, "010300000001840A"_hex}, // a request of the Modbus protocol
        {CHAN, "A", "123441"_hex},
        {RWLT, "55AAABBA"_hex, "AB55AAABBABA"_hex}, // markers inside are payload
        {CNET, "55AAABBA"_hex, "AA07D1123455AAABBA55"_hex},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.frame.toHex().toStdString());
        NotingFramer below;
        Framers framers(&below);
        QFramer& framer = *framers.all[row.kind];
        send(framer, row.payload);
        EXPECT_EQ(below.calls.filter("write"), QStringList("write " + row.frame.toHex()));
        below.calls.clear();
        below.answers = {{row.frame}};
        EXPECT_EQ(receive(framer, 64).bytes, row.payload);
        const int overhead = row.frame.size() - row.payload.size();
        EXPECT_EQ(below.calls, QStringList(QString("read %1").arg(64 + overhead)));
    }
}

TEST(Frames, AreRefusedWhenNotRight)
{
    const QString rwlt_failed = "rwlt: read frame failed or time out, nbytes=%1";
    const QString rwlt_invalid = "rwlt: not a valid data frame, nbytes=%1";
    const QString cnet_failed = "cnet: read frame failed or time out, nbytes=%1";
    const QString cnet_invalid = "cnet: not a valid data frame, nbytes=%1";
    const struct
    {
        Kind kind;
        NotingFramer::Answer came;
        int result;
        QString log;
    } rows[] = {
        {CRC16, {}, 0, {}},
        {CRC16, {{}, -6}, -6, {}},
        {CRC16, {"3132333435363738394B37"_hex}, -5, {}}, // high byte first
        {RTU, {}, 0, {}},
        {RTU, {{}, -6}, -6, {}},
        {RTU, {"1103006B00037687"_hex}, -5, {}}, // of another device
        {RTU, {"010300000001840A01"_hex}, -5, {}},
        {CHAN, {{}, -6}, -5, {}},
        {CHAN, {"1234"_hex}, -5, {}},
        {CHAN, {"123541"_hex}, -5, {}},
        {RWLT, {"ABBA"_hex}, 0, rwlt_failed.arg(2)},
        {RWLT, {{}, -6}, 0, rwlt_failed.arg(-6)},
        {RWLT, {"AA00BA"_hex}, 0, rwlt_invalid.arg(3)},
        {RWLT, {"AB00BB00"_hex}, 0, rwlt_invalid.arg(4)},
        {CNET, {"AA04D112357F55"_hex}, 0, "cnet: frame not from target (1235H)"},
        {CNET, {"AA04D100347F55"_hex}, 0, "cnet: frame not from target (34H)"},
        {CNET, {"AA03D1123455"_hex}, 0, cnet_failed.arg(6)},
        {CNET, {{}, -19}, 0, cnet_failed.arg(-19)},
        {CNET, {"AB04D112347F55"_hex}, 0, cnet_invalid.arg(7)},
        {CNET, {"AA04D112347F54"_hex}, 0, cnet_invalid.arg(7)},
        {CNET, {"AA04D212347F55"_hex}, 0, cnet_invalid.arg(7)},
        {CNET, {"AA05D112347F55"_hex}, 0, cnet_invalid.arg(7)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.bytes.toHex().toStdString());
        NotingFramer below;
        below.answers = {row.came};
        Framers framers(&below);
        QFramer& framer = *framers.all[row.kind];
        QSignalSpy log(&framer, &QFramer::log);
        const Received got = receive(framer, 64);
        EXPECT_EQ(got.result, row.result);
        EXPECT_FALSE(got.touched);
        EXPECT_EQ(lines(log).join('\n'), row.log);
    }
}

TEST(Frames, AreOfAnyLengthButAnImpossibleOne)
{
    constexpr int MOST = FrameBuffer::ON_STACK - RtuFrame::OVERHEAD - Crc16Frame::OVERHEAD;
    for (const int size : {1, 4096, MOST, MOST + 1, MOST + 3, 100000}) {
        const QByteArray payload(size, '\xA5');
        frames_on_heap = 0;
        MemoryLink link;
        link.device = [](const QByteArray& request) { return request; };
        QFramerNull bytes(&link);
        QFramerCrc16 inner(&bytes);
        Framers framers(&inner);
        EXPECT_EQ(send(framers.rtu, payload), size + 5);
        EXPECT_EQ(receive(framers.rtu, size).bytes, payload);
        EXPECT_EQ(frames_on_heap > 0, size > MOST) << size;
    }
    NotingFramer below;
    Framers framers(&below);
    char byte = 0;
    for (const Kind kind : {CRC16, RTU, CHAN})
        for (const int nbytes : {-1, INT_MIN, INT_MAX}) {
            EXPECT_EQ(framers.all[kind]->write(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(framers.all[kind]->read(&byte, nbytes), FRAMER_BAD_SIZE);
        }
    EXPECT_EQ(below.calls, QStringList());
}

TEST(QFramerRtu, AddressesOneFrameWithoutChangingTheSlave)
{
    NotingFramer below;
    QFramerRtu framer(&below);
    framer.slave_set(1);
    below.answers = {{"11034DE1"_hex}, {"11034DE1"_hex}, {"FFFF"_hex}};
    char byte = 0;
    EXPECT_EQ(framer.write_to(0x11, "\x03", 1), 4);
    EXPECT_EQ(framer.write("\x03", 1), 4);
    EXPECT_EQ(framer.read_from(0x11, &byte, 1), 1);
    EXPECT_EQ(framer.read(&byte, 1), FRAMER_BAD_FRAME);
    EXPECT_EQ(framer.read_from(0xFF, &byte, 1), FRAMER_BAD_FRAME) << "no address, yet a CRC of 0";
    EXPECT_EQ(below.calls,
              QStringList({"write 11034de1", "write 01034021", "read 4", "read 4", "read 4"}));
}

TEST(QFramerRwlt, DropsWhatCameBeforeItSends)
{
    NotingFramer below;
    QFramerRwlt framer(&below);
    send(framer, "A");
    EXPECT_EQ(below.calls, QStringList({"flush", "write ab41ba"}));
}

TEST(QFramerChan, KeepsAPrefixOfAtMostSixteenBytes)
{
    NotingFramer below;
    QFramerChan framer(&below);
    send(framer, "A");
    framer.chan_set("0123456789ABCDEF", 16);
    framer.chan_set("12345678901234567", 17);
    send(framer, "A");
    framer.chan_set(std::uint8_t(0xFE));
    send(framer, "A");
    EXPECT_EQ(below.calls,
              QStringList({"write 41", "write 3031323334353637383941424344454641", "write fe41"}));
    EXPECT_EQ(receive(framer, 1).result, FRAMER_BAD_FRAME);
}

} // namespace
