// QFramerRtu over a serial port, against a device that libmodbus plays.
#include "framers/qframernull.h"
#include "layers.h"
#include "links/qlinkserial.h"
#include "modbusserver.h"
#include "plainsettings.h"
#include "wait.h"

#include <gtest/gtest.h>

namespace {

constexpr long SILENCE_MS = 150;

struct ModbusDevice : testing::Test
{
    Pty pty;
    ModbusServer server{pty, 1};

    // What a device answers, asking for as much as it should send.
    QByteArray exchange(int address, const QByteArray& request, int expected, long timeout_ms)
    {
        QLinkSerial link(pty.device(), plain_settings(timeout_ms), false);
        EXPECT_EQ(link.open(), 0);
        QFramerNull bytes(&link);
        QFramerRtu framer(&bytes);
        framer.slave_set(std::uint8_t(address));
        EXPECT_EQ(send(framer, request), request.size() + RtuFrame::OVERHEAD);
        return receive(framer, expected).bytes;
    }
};

TEST_F(ModbusDevice, ReadsAndWritesRegisters)
{
    server.reg(2) = 0x1234;
    server.reg(3) = 0xABCD;
    const struct
    {
        QByteArray request;
        QByteArray reply;
    } rows[] = {
        {"0300020002"_hex, "03041234ABCD"_hex},
        {"060001BEEF"_hex, "060001BEEF"_hex},
        {"100004000204CAFE0055"_hex, "1000040002"_hex},
        {"03000F0002"_hex, "8302"_hex}, // illegal data address
    };
    for (const auto& row : rows)
        EXPECT_EQ(exchange(1, row.request, row.reply.size(), PATIENCE_MS), row.reply);
    EXPECT_EQ(server.reg(1), 0xBEEF);
    EXPECT_EQ(server.reg(4), 0xCAFE);
    EXPECT_EQ(server.reg(5), 0x0055);
}

TEST_F(ModbusDevice, IsSilentToAnotherAddress)
{
    EXPECT_EQ(exchange(2, "060001BEEF"_hex, 5, SILENCE_MS), "");
    EXPECT_EQ(server.reg(1), 0);
}

} // namespace
