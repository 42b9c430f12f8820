// A link and the framers on it as text, such as `serial:/dev/ttyUSB0,115200,8N1` and `crc16`. Pure:
// nothing is opened or looked up.
//
//   LINK     serial:PORT[,BAUD[,FORMAT[,FLOW]]]   FORMAT  data bits 5 to 8, parity N O E M S, stop
//                                                         bits 1 1.5 2: 8N1
//                                                 FLOW    none, rtscts, xonxoff
//            tcp:HOST:PORT                        a name, IPv4, or IPv6 in brackets
//            udp:HOST:PORT
//            rawtcp:ADDRESS:PORT                  the system's sockets, for dotted IPv4 alone
//            rawudp:ADDRESS:PORT
//            broadcast:PORT                       UDP to everybody on the local network
//
//   FRAMERS  FRAMER[+FRAMER...]                   the one nearest to the link first
//   FRAMER   none                                 the payload as it is
//            crc16                                payload, CRC
//            rtu:ADDRESS                          address 0 to 255, payload, CRC
//            chan:PREFIX                          1 to 16 bytes in hexadecimal, payload
//            cnet:TARGET                          0xAA frame to 4 hexadecimal digits
//            rwlt                                 0xAB payload 0xBA
//            dorv[:MODE]                          AT send commands; mac pmac radio data raw;
//                                                 radio if not given
#pragma once

#include "cli/spectext.h"
#include "serialport/qextserialport.h"

enum class LinkKind { Serial, Tcp, Udp, RawTcp, RawUdp, Broadcast };

struct LinkSpec
{
    LinkKind kind = LinkKind::Serial;
    QString port; // serial: the port's name
    PortSettings settings = {BaudRateType(115200), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 0};
    QString host;        // network: name or address, without brackets
    int remote_port = 0; // network
};

enum class FramerKind { None, Crc16, Rtu, Chan, Cnet, Rwlt, Dorv };

constexpr int DORV_RAW = -1; // in FramerSpec::number, beside the modes that QFramerDorv counts

struct FramerSpec
{
    FramerKind kind = FramerKind::None;
    int number = 0;    // rtu: address; cnet: target; dorv: mode, or DORV_RAW
    QByteArray prefix; // chan
    Piece piece;       // where it stood, for complaints
};

using FramerSpecs = QVector<FramerSpec>;

Parsed<LinkSpec> parse_link(const QString& text);
Parsed<FramerSpecs> parse_framers(const QString& text);

// Whether the framers can stand on that link; the place is in the text of the framers.
std::optional<SpecError> find_misfit(const LinkSpec& link, const FramerSpecs& framers);
