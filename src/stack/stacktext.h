// A link and the framers on it as text, such as `serial:/dev/ttyUSB0,115200,8N1` and `crc16`.
// Nothing is opened or looked up.
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

#include "serialport/qextserialport.h"
#include "stack/typedtext.h"

enum class LinkKind { Serial, Tcp, Udp, RawTcp, RawUdp, Broadcast };

struct LinkDescription
{
    LinkKind kind = LinkKind::Serial;
    QString port; // serial: the port's name
    PortSettings settings = {BaudRateType(115200), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, 0};
    QString host;        // network: name or address, without brackets
    int remote_port = 0; // network
};

enum class FramerKind { None, Crc16, Rtu, Chan, Cnet, Rwlt, Dorv };

constexpr int DORV_RAW =
    -1; // in FramerDescription::number, beside the modes that QFramerDorv counts

struct FramerDescription
{
    FramerKind kind = FramerKind::None;
    int number = 0;    // rtu: address; cnet: target; dorv: mode, or DORV_RAW
    QByteArray prefix; // chan
    Piece piece;       // its part of the text
};

// What doesn't fit throws TextError.
LinkDescription parse_link(const Piece& text);
QVector<FramerDescription> parse_framers(const Piece& text);

// What parse_link and parse_framers take for the same. Rate and format are always written.
QString link_text(const LinkDescription& link);
// The port's last part, or host and port: "ttyUSB0", "10.0.0.5:4001".
QString link_name(const LinkDescription& link);
QString framers_text(const QVector<FramerDescription>& framers);

// Throws TextError, with its place in the text of the framers, when they don't work on that link.
void check_fit(const LinkDescription& link, const QVector<FramerDescription>& framers);
