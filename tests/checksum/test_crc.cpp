// The CRCs and sums against published answers, zlib and frames that libmodbus builds.
#include "crc.h"
#include "sums.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <gmock/gmock.h>
#include <modbus.h>
#include <unistd.h>
#include <zlib.h>

namespace {

constexpr std::uint32_t START = 0xFFFFFFFF;

QByteArray random_bytes(QRandomGenerator& random, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

// The definition of a reflected CRC, one bit at a time.
unsigned bitwise_crc8(const QByteArray& bytes)
{
    unsigned c = 0;
    for (const char byte : bytes)
        for (int bit = 0; bit < 8; ++bit)
            c = ((c ^ (unsigned(byte) >> bit)) & 1u) != 0 ? (c >> 1) ^ 0x8C : c >> 1;
    return c;
}

struct Answers
{
    QByteArray bytes;
    unsigned crc8, crc16, crc32, sum8, xor8, sum16;
};

TEST(Checksum, GivesThePublishedAnswers)
{
    const Answers rows[] = {
        {"", 0x00, 0xFFFF, 0xFFFFFFFF, 0x00, 0x00, 0x0000},
        {"123456789", 0xA1, 0x4B37, 0x340BC6D9, 0xDD, 0x31, 0x01DD},
        // A request of the Modbus protocol, and with its CRC behind it.
        {QByteArray::fromHex("010300000001"), 0x27, 0x0A84, 0xB5C6C7BF, 0x05, 0x03, 0x0005},
        {QByteArray::fromHex("010300000001840A"), 0xC5, 0x0000, 0xD967E4F3, 0x93, 0x8D, 0xFF93},
        // The number of a one-wire part, and with its CRC behind it.
        {QByteArray::fromHex("021CB801000000"), 0xA2, 0x7B9B, 0x1913D7F8, 0xD7, 0xA7, 0xFFD7},
        {QByteArray::fromHex("021CB801000000A2"), 0x00, 0x12BB, 0x8BA7AB3D, 0x79, 0x05, 0xFF79},
        // Bytes from 0x80 on count as negative in the wide sum, and only there.
        {QByteArray::fromHex("FF"), 0x35, 0x00FF, 0x00FFFFFF, 0xFF, 0xFF, 0xFFFF},
        {QByteArray::fromHex("FF01"), 0xDF, 0x8081, 0x5A0520E4, 0x00, 0xFE, 0x0000},
        {QByteArray(128, '\x80'), 0x7B, 0x0541, 0x5F7BF8A8, 0x00, 0x00, 0xC000},
    };
    for (const Answers& row : rows) {
        SCOPED_TRACE(row.bytes.toHex().toStdString());
        const char* data = row.bytes.constData();
        const unsigned len = unsigned(row.bytes.size());
        EXPECT_EQ(crc8(data, len), row.crc8);
        EXPECT_EQ(crc16(data, int(len)), row.crc16);
        EXPECT_EQ(crc32(data, len, START), row.crc32);
        EXPECT_EQ(sum8(data, len), row.sum8);
        EXPECT_EQ(xor8(data, len), row.xor8);
        EXPECT_EQ(sum16(data, len), row.sum16);
    }
}

TEST(Checksum, TakesNoBytesFromNowhere)
{
    EXPECT_EQ(crc8(nullptr, 0), 0x00);
    EXPECT_EQ(crc16(nullptr, 0), 0xFFFF);
    EXPECT_EQ(crc16(nullptr, -1), 0xFFFF);
    EXPECT_EQ(crc32(nullptr, 0, 0x12345678), 0x12345678u);
}

TEST(Crc8, AgreesWithItsDefinition)
{
    QRandomGenerator random(8);
    for (int size = 0; size < 600; ++size) {
        const QByteArray bytes = random_bytes(random, size);
        ASSERT_EQ(crc8(bytes.constData(), unsigned(size)), bitwise_crc8(bytes)) << size;
    }
}

TEST(Crc32, IsTheComplementOfZlibsInOnePieceOrTwo)
{
    QRandomGenerator random(32);
    for (int size = 0; size < 1500; ++size) {
        const QByteArray bytes = random_bytes(random, size);
        const auto* data = reinterpret_cast<const Bytef*>(bytes.constData());
        const std::uint32_t expected = ~std::uint32_t(crc32_z(0, data, std::size_t(size)));
        ASSERT_EQ(crc32(data, unsigned(size), START), expected) << size;

        const unsigned cut = random.bounded(unsigned(size) + 1);
        const std::uint32_t first = crc32(data, cut, START);
        ASSERT_EQ(crc32(data + cut, unsigned(size) - cut, first), expected) << size << " " << cut;
    }
}

// libmodbus sends the payload as a serial frame of its own into a pipe, and so puts its CRC behind.
TEST(Crc16, AgreesWithTheFramesOfLibmodbus)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    modbus_t* modbus = modbus_new_rtu("/dev/null", 9600, 'N', 8, 1);
    ASSERT_NE(modbus, nullptr);
    modbus_set_socket(modbus, ends[1]);

    QRandomGenerator random(16);
    for (int n = 0; n < 2000; ++n) {
        const int size = 2 + random.bounded(MODBUS_RTU_MAX_ADU_LENGTH - 3);
        const QByteArray payload = random_bytes(random, size);
        std::uint8_t frame[MODBUS_RTU_MAX_ADU_LENGTH];
        const auto* request = reinterpret_cast<const std::uint8_t*>(payload.constData());
        // Older versions of the library don't declare the request const.
        ASSERT_EQ(modbus_send_raw_request(modbus, const_cast<std::uint8_t*>(request), size),
                  size + 2);
        ASSERT_EQ(read(ends[0], frame, sizeof frame), size + 2);
        const unsigned crc = crc16(payload.constData(), size);
        ASSERT_EQ(frame[size], crc & 0xFF) << payload.toHex().constData();
        ASSERT_EQ(frame[size + 1], crc >> 8) << payload.toHex().constData();
        ASSERT_EQ(crc16(frame, size + 2), 0);
    }
    modbus_free(modbus);
    close(ends[0]);
    close(ends[1]);
}

} // namespace
