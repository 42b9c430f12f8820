// Reads one holding register of a Modbus RTU device: read_register /dev/ttyUSB0 1 40
#include <QCoreApplication>
#include <cstdio>
#include <tarnwick/qframernull.h>
#include <tarnwick/qframerrtu.h>
#include <tarnwick/qlinkserial.h>

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    if (words.size() != 4) {
        std::fprintf(stderr, "usage: read_register <port> <device> <register>\n");
        return 2;
    }
    const int device = words[2].toInt(), reg = words[3].toInt();

    QLinkSerial link(words[1], {BaudRateType(9600), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 2000},
                     false);
    QFramerNull bytes(&link);
    QFramerRtu modbus(&bytes);
    modbus.slave_set(std::uint8_t(device));
    if (link.open() != 0) {
        std::fprintf(stderr, "can't open %s\n", qPrintable(words[1]));
        return 1;
    }

    const char request[] = {3, char(reg >> 8), char(reg), 0, 1}; // read, from here, one register
    unsigned char reply[4] = {};                                 // read, byte count, value
    modbus.flush();
    if (modbus.write(request, sizeof request) < 1 ||
        modbus.read(reinterpret_cast<char*>(reply), sizeof reply) != sizeof reply ||
        reply[0] != 3) {
        std::fprintf(stderr, "no value from device %d: check its address and rate\n", device);
        return 1;
    }
    std::printf("%d\n", reply[2] << 8 | reply[3]);
    return 0;
}
