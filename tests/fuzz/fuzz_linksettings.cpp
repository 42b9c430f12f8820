// Any bytes as the file of the link dialog: what it gives to a link is in range, whatever the file
// says, and what it stores it shows again.

#include "qlinkcfgdlg.h"
#include "qserialcfgwidget.h"
#include "qtcpipcfgwidget.h"
#include "windowfuzz.h"

static const QString CFG_FILE = "link.ini";

static bool in(int value, int least, int most)
{
    return value >= least && value <= most;
}

static QVector<int> checked(const QLinkCfgDlg& dialog)
{
    const QSerialCfgWidget& serial = *dialog.serial_widget();
    // A row that there is none of leaves nothing chosen, which reads as 0.
    require(serial.baud_rate() >= 0 && serial.custom_baud() >= 1);
    require(serial.data_bits() == 0 || in(serial.data_bits(), DATA_5, DATA_8));
    require(in(serial.parity(), PAR_NONE, PAR_SPACE) && in(serial.stop_bits(), STOP_1, STOP_2));
    require(in(serial.flow_control(), FLOW_OFF, FLOW_XONXOFF) && in(serial.timeout(), 1, 20000));

    tcpip_cfg cfg;
    dialog.tcpip_widget()->settings_get(&cfg);
    require(cfg.addr[sizeof cfg.addr - 1] == '\0' && in(cfg.ip_version, -1, TCPIP_V6));
    require(in(cfg.remote_port, 0, 65535) && in(cfg.local_port, 0, 65535) && cfg.timeout >= 0);

    SerialCfgIndexes rows;
    serial.indexes_get(&rows);
    return {dialog.link_type(), rows.port,   rows.baud,      rows.data_bits,       rows.parity,
            rows.stop_bits,     rows.flow,   rows.timeout,   cfg.ip_version,       cfg.protocol,
            cfg.remote_port,    cfg.timeout, cfg.local_port, cfg.local_port_random};
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    FuzzApplication::start();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QFile::remove(CFG_FILE);
    write_file(CFG_FILE, QByteArray(reinterpret_cast<const char*>(data), int(size)));
    QVector<int> first;
    {
        const QLinkCfgDlg dialog(nullptr, CFG_FILE);
        first = checked(dialog);
    }
    require(checked(QLinkCfgDlg(nullptr, CFG_FILE)) == first);
    return 0;
}
