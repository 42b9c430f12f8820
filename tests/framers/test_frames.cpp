// The framers that wrap payload in a frame: transcripts in plain bytes, and what becomes of frames
// that aren't right.
#include "layers.h"
#include "memorylink.h"
#include "qframerchan.h"
#include "qframercnet.h"
#include "qframercrc16.h"
#include "qframernull.h"
#include "qframerrtu.h"
#include "qframerrwlt.h"

#include <climits>
#include <gtest/gtest.h>
#include <memory>

namespace {

using Made = std::unique_ptr<QFramer>;
using Make = Made (*)(QFramer* lower);

template <typename Framer> Made plain(QFramer* lower)
{
    return std::make_unique<Framer>(lower);
}

template <int ADDRESS> Made rtu(QFramer* lower)
{
    auto framer = std::make_unique<QFramerRtu>(lower);
    framer->slave_set(ADDRESS);
    return framer;
}

Made chan(QFramer* lower)
{
    auto framer = std::make_unique<QFramerChan>(lower);
    framer->chan_set(std::uint16_t(0x1234));
    return framer;
}

Made cnet(QFramer* lower)
{
    auto framer = std::make_unique<QFramerCnet>(lower);
    framer->target_set(std::uint16_t(0x1234));
    return framer;
}

constexpr Make crc16 = plain<QFramerCrc16>;
constexpr Make rwlt = plain<QFramerRwlt>;

TEST(Frames, AreTheKnownBytes)
{
    const struct
    {
        Make make;
        QByteArray payload;
        QByteArray frame;
    } rows[] = {
        {crc16, "123456789", "313233343536373839374B"_hex},
        {crc16, "", "FFFF"_hex},
        {rtu<1>, "0300000001"_hex, "010300000001840A"_hex}, // a request of the Modbus protocol
        {rtu<0x11>, "03006B0003"_hex, "1103006B00037687"_hex},
        {chan, "A", "123441"_hex},
        {plain<QFramerChan>, "A", "41"_hex},
        {rwlt, "0102"_hex, "AB0102BA"_hex},
        {rwlt, "55AAABBA"_hex, "AB55AAABBABA"_hex}, // markers inside are payload
        {cnet, "0102"_hex, "AA05D11234010255"_hex},
        {cnet, "55AAABBA"_hex, "AA07D1123455AAABBA55"_hex},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.frame.toHex(' ').toStdString());
        NotingFramer below;
        const Made framer = row.make(&below);
        send(*framer, row.payload);
        EXPECT_EQ(below.calls.filter("write"), QStringList("write " + row.frame.toHex(' ')));
        below.calls.clear();
        below.answers = {{row.frame}};
        const Received got = receive(*framer, row.payload.size());
        EXPECT_EQ(got.result, row.payload.size());
        EXPECT_EQ(got.bytes, row.payload);
        framer->flush();
        EXPECT_EQ(below.calls, QStringList({QString("read %1").arg(row.frame.size()), "flush"}));
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
        Make make;
        NotingFramer::Answer came;
        int result;
        QString log;
    } rows[] = {
        {crc16, {}, 0, {}},
        {crc16, {{}, -6}, -6, {}},
        {crc16, {"3132333435363738394B37"_hex}, -5, {}}, // high byte first
        {rtu<1>, {}, 0, {}},
        {rtu<1>, {{}, -6}, -6, {}},
        {rtu<2>, {"010300000001840A"_hex}, -5, {}},
        {rtu<0xFF>, {"FFFF"_hex}, -5, {}}, // no address, yet a CRC of 0
        {rtu<1>, {"010300000001840A01"_hex}, -5, {}},
        {chan, {}, -5, {}},
        {chan, {{}, -6}, -5, {}},
        {chan, {"1234"_hex}, -5, {}},
        {chan, {"12"_hex}, -5, {}},
        {chan, {"123541"_hex}, -5, {}},
        {plain<QFramerChan>, {}, -5, {}},
        {rwlt, {"ABBA"_hex}, 0, rwlt_failed.arg(2)},
        {rwlt, {}, 0, rwlt_failed.arg(0)},
        {rwlt, {{}, -6}, 0, rwlt_failed.arg(-6)},
        {rwlt, {"AA00BA"_hex}, 0, rwlt_invalid.arg(3)},
        {rwlt, {"AB00BB00"_hex}, 0, rwlt_invalid.arg(4)},
        {cnet, {"AA04D112357F55"_hex}, 0, "cnet: frame not from target (1235H)"},
        {cnet, {"AA04D100057F55"_hex}, 0, "cnet: frame not from target (05H)"},
        {cnet, {"AA03D1123455"_hex}, 0, cnet_failed.arg(6)},
        {cnet, {}, 0, cnet_failed.arg(0)},
        {cnet, {{}, -19}, 0, cnet_failed.arg(-19)},
        {cnet, {"AB04D112347F55"_hex}, 0, cnet_invalid.arg(7)},
        {cnet, {"AA04D112347F54"_hex}, 0, cnet_invalid.arg(7)},
        {cnet, {"AA04D212347F55"_hex}, 0, cnet_invalid.arg(7)},
        {cnet, {"AA05D112347F55"_hex}, 0, cnet_invalid.arg(7)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.bytes.toHex(' ').toStdString());
        NotingFramer below;
        below.answers = {row.came};
        const Made framer = row.make(&below);
        QSignalSpy log(framer.get(), &QFramer::log);
        const Received got = receive(*framer, 64);
        EXPECT_EQ(got.result, row.result);
        EXPECT_FALSE(got.touched);
        EXPECT_EQ(lines(log).join('\n'), row.log);
    }
}

TEST(Frames, WithACrcShowEveryFlippedBitAndEveryFrameOfOneByte)
{
    for (const Make make : {crc16, Make(rtu<1>)}) {
        NotingFramer below;
        const Made framer = make(&below);
        const QByteArray frame = sent_frame(below, *framer, "some payload");
        for (int bit = 0; bit < frame.size() * 8; ++bit) {
            QByteArray damaged = frame;
            damaged[bit / 8] = char(damaged.at(bit / 8) ^ (1 << bit % 8));
            below.answers.push_back({damaged});
        }
        for (int byte = 0; byte < 256; ++byte)
            below.answers.push_back({QByteArray(1, char(byte))});
        while (!below.answers.empty())
            EXPECT_EQ(receive(*framer, 64).result, FRAMER_BAD_FRAME);
    }
}

TEST(Frames, AreOfAnyLengthButAnImpossibleOne)
{
    // On both sides of the room on the stack.
    for (const int size : {1, 255, 1148, 1149, 1150, 1151, 1152, 1153, 100000}) {
        const QByteArray payload(size, '\xA5');
        MemoryLink link;
        link.device = [](const QByteArray& request) { return request; };
        QFramerNull bytes(&link);
        QFramerCrc16 inner(&bytes);
        const Made framer = rtu<9>(&inner);
        EXPECT_EQ(send(*framer, payload), size + 5);
        EXPECT_EQ(receive(*framer, size).bytes, payload);
    }
    for (const Make make : {crc16, Make(rtu<1>), Make(chan)})
        for (const int nbytes : {-1, INT_MIN, INT_MAX}) {
            NotingFramer below;
            char byte = 0;
            EXPECT_EQ(make(&below)->write(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(make(&below)->read(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(below.calls, QStringList());
        }
}

TEST(QFramerRtu, AddressesOneFrameWithoutChangingTheSlave)
{
    NotingFramer below;
    QFramerRtu framer(&below);
    framer.slave_set(1);
    below.answers = {{"11034DE1"_hex}, {"11034DE1"_hex}};
    char byte = 0;
    EXPECT_EQ(framer.write_to(0x11, "\x03", 1), 4);
    EXPECT_EQ(framer.write("\x03", 1), 4);
    EXPECT_EQ(framer.read_from(0x11, &byte, 1), 1);
    EXPECT_EQ(framer.read(&byte, 1), FRAMER_BAD_FRAME);
    EXPECT_EQ(below.calls,
              QStringList({"write 11 03 4d e1", "write 01 03 40 21", "read 4", "read 4"}));
}

TEST(QFramerChan, KeepsAPrefixOfAtMostSixteenBytes)
{
    NotingFramer below;
    QFramerChan framer(&below);
    const QByteArray sixteen = "000102030405060708090A0B0C0D0E0F"_hex;
    framer.chan_set(sixteen.constData(), 16);
    framer.chan_set("12345678901234567", 17);
    EXPECT_EQ(send(framer, "\x41"), 17);
    framer.chan_set(std::uint8_t(0xFE));
    EXPECT_EQ(send(framer, "\x41"), 2);
    EXPECT_EQ(below.calls, QStringList({"write " + sixteen.toHex(' ') + " 41", "write fe 41"}));
}

} // namespace
