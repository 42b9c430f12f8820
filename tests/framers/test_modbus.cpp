// QFramerRtu over a serial port, against a device that libmodbus plays.
#include "framerstack.h"
#include "links/qlinkserial.h"
#include "modbusserver.h"
#include "plainsettings.h"
#include "wait.h"

namespace {

TEST(Modbus, DeviceReadsAndWritesRegistersAtItsOwnAddress)
{
    Pty pty;
    ModbusServer server(pty, 1);
    const struct
    {
        std::uint8_t address;
        QByteArray request, reply;
        long timeout_ms;
    } rows[] = {
        {1, "060001BEEF"_hex, "060001BEEF"_hex, PATIENCE_MS},
        {1, "100004000204CAFE0055"_hex, "1000040002"_hex, PATIENCE_MS},
        {1, "0300010005"_hex, "030ABEEF00000000CAFE0055"_hex, PATIENCE_MS},
        {1, "03000F0002"_hex, "8302"_hex, PATIENCE_MS}, // illegal data address
        {2, "060001DEAD"_hex, "", 150}, // the last, as the device may not have read it yet
    };
    for (const auto& row : rows) {
        QLinkSerial link(pty.device(), plain_settings(row.timeout_ms), false);
        ASSERT_EQ(link.open(), 0);
        QFramerNull bytes(&link);
        QFramerRtu framer(&bytes);
        framer.slave_set(row.address);
        EXPECT_EQ(send(framer, row.request), row.request.size() + RtuFrame::OVERHEAD);
        EXPECT_EQ(receive(framer, row.reply.size()).bytes, row.reply);
    }
}

} // namespace
