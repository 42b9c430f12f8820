// QFramerRtu over a serial port, against a device that libmodbus plays.
#include "layers.h"
#include "modbusserver.h"
#include "portsettings.h"
#include "qframernull.h"
#include "qframerrtu.h"
#include "qlinkserial.h"
#include "wait.h"

#include <gtest/gtest.h>

namespace {

constexpr long SILENCE_MS = 150;

// Flips a bit of each frame on its way.
struct DamagingFramer : QFramerNull
{
    using QFramerNull::QFramerNull;
    bool damage_writes = false;
    bool damage_reads = false;

    int write(const char* buffer, int nbytes) override
    {
        QByteArray frame(buffer, nbytes);
        if (damage_writes)
            frame[nbytes - 1] = char(frame.at(nbytes - 1) ^ 0x10);
        return QFramerNull::write(frame.constData(), nbytes);
    }
    int read(char* buffer, int nbytes) override
    {
        const int received = QFramerNull::read(buffer, nbytes);
        if (damage_reads && received > 0)
            buffer[received / 2] = char(buffer[received / 2] ^ 0x01);
        return received;
    }
};

struct ModbusDevice : testing::Test
{
    Pty pty;
    ModbusServer server{pty, 1};

    // What a device answers, asking for as much as it should send.
    Received exchange(QFramerRtu& framer, const QByteArray& request, int expected)
    {
        framer.flush();
        EXPECT_EQ(send(framer, request), request.size() + RtuFrame::OVERHEAD);
        return receive(framer, expected);
    }
};

TEST_F(ModbusDevice, ReadsAndWritesRegisters)
{
    QLinkSerial link(pty.device(), plain_settings(PATIENCE_MS), false);
    ASSERT_EQ(link.open(), 0);
    QFramerNull bytes(&link);
    QFramerRtu framer(&bytes);
    framer.slave_set(1);
    server.reg(2) = 0x1234;
    server.reg(3) = 0xABCD;

    const QByteArray read_two = "0300020002"_hex;
    EXPECT_EQ(exchange(framer, read_two, 6).bytes, "03041234ABCD"_hex);
    const QByteArray write_one = "060001BEEF"_hex;
    EXPECT_EQ(exchange(framer, write_one, 5).bytes, write_one);
    EXPECT_EQ(server.reg(1), 0xBEEF);
    const QByteArray write_two = "100004000204CAFE0055"_hex;
    EXPECT_EQ(exchange(framer, write_two, 5).bytes, write_two.left(5));
    EXPECT_EQ(server.reg(4), 0xCAFE);
    EXPECT_EQ(server.reg(5), 0x0055);
    const QByteArray read_too_far = "03000F0002"_hex;
    EXPECT_EQ(exchange(framer, read_too_far, 2).bytes, "8302"_hex); // illegal data address

    // The right reply, taken for another device's.
    ASSERT_EQ(framer.write_to(1, read_two.constData(), read_two.size()), 8);
    char reply[6];
    EXPECT_EQ(framer.read_from(2, reply, 6), FRAMER_BAD_FRAME);
}

TEST_F(ModbusDevice, IsSilentToAnotherAddressAndToDamagedFrames)
{
    QLinkSerial link(pty.device(), plain_settings(SILENCE_MS), false);
    ASSERT_EQ(link.open(), 0);
    DamagingFramer bytes(&link);
    QFramerRtu framer(&bytes);
    const QByteArray write_one = "060001BEEF"_hex;

    framer.slave_set(2);
    EXPECT_EQ(exchange(framer, write_one, 5).result, 0);
    framer.slave_set(1);
    bytes.damage_writes = true;
    EXPECT_EQ(exchange(framer, write_one, 5).result, 0);
    EXPECT_EQ(server.reg(1), 0);
}

TEST_F(ModbusDevice, IsNotBelievedWhenItsReplyIsDamaged)
{
    QLinkSerial link(pty.device(), plain_settings(PATIENCE_MS), false);
    ASSERT_EQ(link.open(), 0);
    DamagingFramer bytes(&link);
    bytes.damage_reads = true;
    QFramerRtu framer(&bytes);
    framer.slave_set(1);
    const Received got = exchange(framer, "0300020002"_hex, 6);
    EXPECT_EQ(got.result, FRAMER_BAD_FRAME);
    EXPECT_FALSE(got.touched);
}

} // namespace
