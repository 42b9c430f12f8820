// QFramerNull, QFramerCrc16, QFramerRtu and QFramerChan: transcripts in plain bytes and what
// becomes of frames that aren't right.
#include "layers.h"
#include "memorylink.h"
#include "qframerchan.h"
#include "qframercrc16.h"
#include "qframernull.h"
#include "qframerrtu.h"

#include <climits>
#include <gmock/gmock.h>
#include <memory>

namespace {

using Made = std::unique_ptr<QFramer>;
using Make = Made (*)(QFramer* lower);

Made crc16_framer(QFramer* lower)
{
    return std::make_unique<QFramerCrc16>(lower);
}

template <int ADDRESS> Made rtu_framer(QFramer* lower)
{
    auto framer = std::make_unique<QFramerRtu>(lower);
    framer->slave_set(ADDRESS);
    return framer;
}

Made plain_chan_framer(QFramer* lower)
{
    return std::make_unique<QFramerChan>(lower);
}

Made chan_framer(QFramer* lower)
{
    auto framer = std::make_unique<QFramerChan>(lower);
    framer->chan_set(std::uint16_t(0x1234));
    return framer;
}

TEST(SimpleFramers, SpeakTheirTranscripts)
{
    const struct
    {
        Make make;
        QByteArray payload;
        QByteArray frame;
    } rows[] = {
        {crc16_framer, "123456789", "313233343536373839374B"_hex},
        {crc16_framer, "", "FFFF"_hex},
        {rtu_framer<1>, "0300000001"_hex,
         "010300000001840A"_hex}, // a request of the Modbus protocol
        {rtu_framer<0x11>, "03006B0003"_hex, "1103006B00037687"_hex},
        {chan_framer, "A", "123441"_hex},
        {plain_chan_framer, "A", "41"_hex},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.frame.toHex(' ').toStdString());
        NotingFramer below;
        const Made framer = row.make(&below);
        EXPECT_EQ(send(*framer, row.payload), row.frame.size());
        EXPECT_EQ(below.calls.takeFirst(), "write " + QString(row.frame.toHex(' ')));
        below.answers = {{row.frame}};
        const Received got = receive(*framer, row.payload.size());
        EXPECT_EQ(got.result, row.payload.size());
        EXPECT_EQ(got.bytes, row.payload);
        framer->flush();
        EXPECT_EQ(below.calls, QStringList({QString("read %1").arg(row.frame.size()), "flush"}));
    }
}

TEST(SimpleFramers, RefuseFramesThatAreNotRight)
{
    const struct
    {
        const char* what;
        Make make;
        NotingFramer::Answer came;
        int result;
    } rows[] = {
        {"nothing in time", crc16_framer, {}, 0},
        {"error below", crc16_framer, {{}, -6}, -6},
        {"half a CRC", crc16_framer, {"\xFF"}, -5},
        {"CRC high byte first", crc16_framer, {"3132333435363738394B37"_hex}, -5},
        {"nothing in time", rtu_framer<1>, {}, 0},
        {"error below", rtu_framer<1>, {{}, -6}, -6},
        {"another address", rtu_framer<2>, {"010300000001840A"_hex}, -5},
        {"no address, yet a CRC of 0", rtu_framer<0xFF>, {"FFFF"_hex}, -5},
        {"cut short", rtu_framer<1>, {"0103000000018"_hex}, -5},
        {"a byte too many", rtu_framer<1>, {"010300000001840A01"_hex}, -5},
        {"nothing in time", chan_framer, {}, -5},
        {"error below", chan_framer, {{}, -6}, -5},
        {"the prefix alone", chan_framer, {"1234"_hex}, -5},
        {"half a prefix", chan_framer, {"12"_hex}, -5},
        {"another prefix", chan_framer, {"123541"_hex}, -5},
        {"nothing in time, without prefix", plain_chan_framer, {}, -5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.what) + " " + row.came.bytes.toHex(' ').toStdString());
        NotingFramer below;
        below.answers = {row.came};
        const Received got = receive(*row.make(&below), 64);
        EXPECT_EQ(got.result, row.result);
        EXPECT_FALSE(got.touched);
    }
}

TEST(SimpleFramers, FindEveryFlippedBitAndEveryFrameOfOneByte)
{
    for (const Make make : {Make(crc16_framer), Make(rtu_framer<1>)}) {
        NotingFramer below;
        const Made framer = make(&below);
        send(*framer, "some payload");
        const QByteArray frame = QByteArray::fromHex(below.calls.first().mid(6).toLatin1());
        for (int bit = 0; bit < frame.size() * 8; ++bit) {
            QByteArray damaged = frame;
            damaged[bit / 8] = char(damaged.at(bit / 8) ^ (1 << bit % 8));
            below.answers.push_back({damaged});
        }
        for (int byte = 0; byte < 256; ++byte)
            below.answers.push_back({QByteArray(1, char(byte))});
        while (!below.answers.empty()) {
            const Received got = receive(*framer, 64);
            EXPECT_EQ(got.result, FRAMER_BAD_FRAME);
            EXPECT_FALSE(got.touched);
        }
    }
}

TEST(QFramerRtu, AddressesOneFrameWithoutChangingTheSlave)
{
    NotingFramer below;
    QFramerRtu framer(&below);
    framer.slave_set(1);
    below.answers = {{"11034DE1"_hex}, {"11034DE1"_hex}};
    EXPECT_EQ(framer.write_to(0x11, "\x03", 1), 4);
    EXPECT_EQ(framer.write("\x03", 1), 4);
    char byte = 0;
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
    framer.chan_set(nullptr, 0);
    EXPECT_EQ(send(framer, "\x41"), 1);
    EXPECT_EQ(below.calls,
              QStringList({"write " + sixteen.toHex(' ') + " 41", "write fe 41", "write 41"}));
}

TEST(QFramerNull, PassesEverythingThroughToAnOpenLinkOnly)
{
    MemoryLink link;
    QFramerNull framer(nullptr);
    framer.flush();
    framer.link_set(&link);
    link.arrive("stale");
    framer.flush();
    EXPECT_EQ(link.unread(), "");
    link.reply("pong");
    link.write_limit = 3;
    EXPECT_EQ(send(framer, "ping"), 3);
    EXPECT_EQ(receive(framer, 64).bytes, "pong");
    link.arrive("kept");
    link.close();
    framer.flush();
    EXPECT_EQ(receive(framer, 64).result, FRAMER_CLOSED);
    EXPECT_EQ(link.unread(), "kept");
}

TEST(SimpleFramers, CarryFramesOfAnyLength)
{
    // On both sides of the room on the stack.
    for (const int size : {1, 255, 1148, 1149, 1150, 1151, 1152, 1153, 100000}) {
        const QByteArray payload(size, '\xA5');
        MemoryLink link;
        link.device = [](const QByteArray& request) { return request; };
        QFramerNull bytes(&link);
        QFramerCrc16 inner(&bytes);
        QFramerRtu framer(&inner);
        framer.slave_set(9);
        EXPECT_EQ(send(framer, payload), size + 5);
        EXPECT_EQ(receive(framer, size).bytes, payload);
    }
}

TEST(SimpleFramers, RefuseALengthThatNoFrameCanHave)
{
    for (const Make make : {Make(crc16_framer), Make(rtu_framer<1>), Make(chan_framer)})
        for (const int nbytes : {-1, INT_MIN, INT_MAX}) {
            NotingFramer below;
            const Made framer = make(&below);
            char byte = 0;
            EXPECT_EQ(framer->write(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(framer->read(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(below.calls, QStringList());
        }
}

} // namespace
