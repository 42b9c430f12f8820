#include "stack/stacktext.h"

#include "framers/qframerchan.h"
#include "links/tcpip_cfg.h"

#include <algorithm>

namespace {
constexpr int HIGHEST_BAUD = 100'000'000; // beyond every port there is; guards against slips
constexpr int LONGEST_HOST = sizeof(tcpip_cfg::addr) - 1;
constexpr int LONGEST_PREFIX = QFramerChan::PREFIX_MAX;
constexpr int DORV_RADIO = 2; // the mode that QFramerDorv starts in

struct Named
{
    const char* name = nullptr;
    int value = 0;
};

constexpr Named LINK_KINDS[] = {
    {"serial", int(LinkKind::Serial)}, {"tcp", int(LinkKind::Tcp)},
    {"udp", int(LinkKind::Udp)},       {"rawtcp", int(LinkKind::RawTcp)},
    {"rawudp", int(LinkKind::RawUdp)}, {"broadcast", int(LinkKind::Broadcast)},
};

constexpr Named FRAMER_KINDS[] = {
    {"none", int(FramerKind::None)}, {"crc16", int(FramerKind::Crc16)},
    {"rtu", int(FramerKind::Rtu)},   {"chan", int(FramerKind::Chan)},
    {"cnet", int(FramerKind::Cnet)}, {"rwlt", int(FramerKind::Rwlt)},
    {"dorv", int(FramerKind::Dorv)},
};

constexpr Named PARITIES[] = {
    {"N", PAR_NONE}, {"O", PAR_ODD}, {"E", PAR_EVEN}, {"M", PAR_MARK}, {"S", PAR_SPACE}};

constexpr Named STOP_BITS[] = {{"1", STOP_1}, {"1.5", STOP_1_5}, {"2", STOP_2}};

constexpr Named FLOWS[] = {
    {"none", FLOW_OFF}, {"rtscts", FLOW_HARDWARE}, {"xonxoff", FLOW_XONXOFF}};

constexpr Named DORV_MODES[] = {
    {"mac", 0}, {"pmac", 1}, {"radio", DORV_RADIO}, {"data", 3}, {"raw", DORV_RAW}};

template <std::size_t SIZE>
int named(const Piece& piece, const Named (&table)[SIZE], const QString& expected)
{
    QStringList names;
    for (const Named& row : table) {
        if (piece.is(row.name))
            return row.value;
        names.append(row.name);
    }
    const QString got = piece.text.isEmpty() ? StackText::tr("nothing here")
                                             : StackText::tr("\"%1\" is unknown").arg(piece.text);
    throw piece.error(StackText::tr("%1: %2 is one of %3").arg(got, expected, names.join(", ")));
}

int number(const Piece& piece, std::int64_t least, std::int64_t most, const QString& expected)
{
    const auto value = number_in(piece.text, least, most);
    if (!value)
        throw piece.error(
            StackText::tr("%1 is a number from %2 to %3").arg(expected).arg(least).arg(most));
    return int(*value);
}

// The word before the first colon, and what follows it; null when there is no colon.
struct Head
{
    Piece word;
    std::optional<Piece> rest;
};

Head split_head(const Piece& piece)
{
    const int colon = piece.text.indexOf(':');
    if (colon < 0)
        return {piece, std::nullopt};
    return {piece.mid(0, colon), piece.mid(colon + 1)};
}

void read_format(const Piece& piece, PortSettings& settings)
{
    settings.DataBits = DataBitsType(
        number(piece.mid(0, 1), DATA_5, DATA_8, StackText::tr("a count of data bits")));
    settings.Parity = ParityType(named(piece.mid(1, 1), PARITIES, StackText::tr("the parity")));
    settings.StopBits =
        StopBitsType(named(piece.mid(2), STOP_BITS, StackText::tr("the number of stop bits")));
}

void read_serial(const Piece& rest, LinkDescription& link)
{
    const QVector<Piece> pieces = rest.split(',');
    link.port = pieces[0].text;
    if (link.port.isEmpty())
        throw pieces[0].error(StackText::tr("the name of a port is missing, such as /dev/ttyUSB0"));
    if (pieces.size() > 1)
        link.settings.BaudRate = BaudRateType(
            number(pieces[1], 1, HIGHEST_BAUD, StackText::tr("the rate in bits per second")));
    if (pieces.size() > 2)
        read_format(pieces[2], link.settings);
    if (pieces.size() > 3)
        link.settings.FlowControl =
            FlowType(named(pieces[3], FLOWS, StackText::tr("the flow control")));
    if (pieces.size() > 4)
        throw pieces[4].error(StackText::tr("nothing is expected after the flow control"));
}

int port_number(const Piece& piece)
{
    return number(piece, 1, 65535, StackText::tr("a port"));
}

bool is_dotted_address(const QString& host)
{
    const QStringList numbers = host.split('.');
    return numbers.size() == 4 && std::all_of(numbers.cbegin(), numbers.cend(), [](auto& part) {
               // The conversion alone would take blanks and signs too.
               const bool digits = std::all_of(part.cbegin(), part.cend(),
                                               [](QChar c) { return c >= '0' && c <= '9'; });
               return digits && !part.isEmpty() && part.size() <= 3 && part.toUInt() <= 255;
           });
}

void read_network(const Piece& rest, LinkDescription& link)
{
    const int colon = rest.text.lastIndexOf(':');
    const bool bracketed = rest.text.startsWith('[');
    const int bracket = bracketed ? rest.text.indexOf(']') : -1;
    if (bracketed && bracket < 0)
        throw rest.error_after(StackText::tr("the closing bracket of the IPv6 address is missing"));
    if (colon < 0 || colon < bracket)
        throw rest.error_after(
            StackText::tr("the port is missing, as in %1").arg(rest.text + ":4001"));

    Piece host = rest.mid(0, colon);
    if (bracketed && bracket != colon - 1)
        throw rest.mid(bracket + 1, colon - bracket - 1)
            .error(StackText::tr("a colon and the port follow the bracket"));
    if (bracketed)
        host = rest.mid(1, bracket - 1);
    else if (host.text.contains(':'))
        throw host.error(StackText::tr("an IPv6 address is written in brackets, as in [::1]:4001"));
    if (host.text.isEmpty())
        throw host.error(StackText::tr("the host is missing"));
    if (host.text.size() > LONGEST_HOST)
        throw host.error(StackText::tr("a host has at most %1 characters").arg(LONGEST_HOST));
    const bool raw = link.kind == LinkKind::RawTcp || link.kind == LinkKind::RawUdp;
    if (raw && !is_dotted_address(host.text))
        throw host.error(
            StackText::tr("raw sockets take an IPv4 address such as 10.0.0.5; names work with tcp: "
                          "and udp:"));
    link.host = host.text;
    link.remote_port = port_number(rest.mid(colon + 1));
}

} // namespace

LinkDescription parse_link(const Piece& text)
{
    const Head head = split_head(text);
    const bool looks_like_port =
        !head.rest && (text.text.startsWith('/') || text.text.startsWith("COM"));
    if (looks_like_port)
        throw text.error(
            StackText::tr("the kind of link is missing: write serial:%1").arg(text.text));
    LinkDescription link;
    link.kind = LinkKind(named(head.word, LINK_KINDS, StackText::tr("the kind of link")));
    if (!head.rest)
        throw text.error_after(
            link.kind == LinkKind::Serial
                ? StackText::tr("a colon and the port are missing, as in serial:/dev/ttyUSB0")
                : StackText::tr("a colon and the address are missing, as in tcp:10.0.0.5:4001"));
    if (link.kind == LinkKind::Serial)
        read_serial(*head.rest, link);
    else if (link.kind == LinkKind::Broadcast)
        link.remote_port = port_number(*head.rest);
    else
        read_network(*head.rest, link);
    return link;
}

namespace {
QByteArray hex_argument(const Piece& piece, int least, int most, const QString& expected)
{
    QByteArray bytes = parse_hex_bytes(piece);
    if (bytes.size() < least || bytes.size() > most)
        throw piece.error(expected);
    return bytes;
}

FramerDescription read_framer(const Piece& text)
{
    const Head head = split_head(text);
    FramerDescription framer;
    framer.piece = text;
    framer.kind = FramerKind(named(head.word, FRAMER_KINDS, StackText::tr("a framer")));
    const auto argument = [&](const char* example) {
        if (!head.rest)
            throw text.error_after(StackText::tr("more is needed, as in %1").arg(example));
        return *head.rest;
    };
    switch (framer.kind) {
    case FramerKind::Rtu:
        framer.number = number(argument("rtu:1"), 0, 255, StackText::tr("the address"));
        break;
    case FramerKind::Chan:
        framer.prefix =
            hex_argument(argument("chan:05"), 1, LONGEST_PREFIX,
                         StackText::tr("a prefix has 1 to 16 bytes, as in chan:05 or chan:1234"));
        break;
    case FramerKind::Cnet: {
        const QByteArray target =
            hex_argument(argument("cnet:1234"), 2, 2,
                         StackText::tr("a target has 4 hexadecimal digits, as in cnet:1234"));
        framer.number = std::uint8_t(target[0]) << 8 | std::uint8_t(target[1]);
        break;
    }
    case FramerKind::Dorv:
        framer.number =
            head.rest ? named(*head.rest, DORV_MODES, StackText::tr("the mode")) : DORV_RADIO;
        break;
    case FramerKind::None:
    case FramerKind::Crc16:
    case FramerKind::Rwlt:
        if (head.rest)
            throw head.rest->error(
                StackText::tr("nothing is expected after %1").arg(head.word.text));
        break;
    }
    return framer;
}
} // namespace

QVector<FramerDescription> parse_framers(const Piece& text)
{
    QVector<FramerDescription> framers;
    for (const Piece& piece : text.split('+'))
        framers.append(read_framer(piece));
    return framers;
}

namespace {
template <std::size_t SIZE> QString name_of(int value, const Named (&table)[SIZE])
{
    const Named* row = std::find_if(std::begin(table), std::end(table),
                                    [&](const Named& row) { return row.value == value; });
    return row == std::end(table) ? QString() : QString(row->name);
}
} // namespace

namespace {
QString host_and_port(const LinkDescription& link)
{
    const QString host = link.host.contains(':') ? '[' + link.host + ']' : link.host;
    return host + ':' + QString::number(link.remote_port);
}
} // namespace

QString link_text(const LinkDescription& link)
{
    const QString kind = name_of(int(link.kind), LINK_KINDS) + ':';
    if (link.kind == LinkKind::Broadcast)
        return kind + QString::number(link.remote_port);
    if (link.kind != LinkKind::Serial)
        return kind + host_and_port(link);
    const PortSettings& settings = link.settings;
    const QString format = QString::number(settings.DataBits) + name_of(settings.Parity, PARITIES) +
                           name_of(settings.StopBits, STOP_BITS);
    const QString text = kind + link.port + ',' + QString::number(settings.BaudRate) + ',' + format;
    return settings.FlowControl == FLOW_OFF ? text
                                            : text + ',' + name_of(settings.FlowControl, FLOWS);
}

QString link_name(const LinkDescription& link)
{
    if (link.kind == LinkKind::Serial)
        return link.port.section('/', -1);
    return link.kind == LinkKind::Broadcast ? link_text(link) : host_and_port(link);
}

QString framers_text(const QVector<FramerDescription>& framers)
{
    QStringList texts;
    for (const FramerDescription& framer : framers) {
        const QString name = name_of(int(framer.kind), FRAMER_KINDS);
        if (framer.kind == FramerKind::Rtu)
            texts += name + ':' + QString::number(framer.number);
        else if (framer.kind == FramerKind::Chan)
            texts += name + ':' + QString::fromLatin1(framer.prefix.toHex());
        else if (framer.kind == FramerKind::Cnet)
            texts += name + QStringLiteral(":%1").arg(framer.number, 4, 16, QChar('0'));
        else if (framer.kind == FramerKind::Dorv)
            texts += name + ':' + name_of(framer.number, DORV_MODES);
        else
            texts += name;
    }
    return texts.isEmpty() ? QString("none") : texts.join('+');
}

void check_fit(const LinkDescription& link, const QVector<FramerDescription>& framers)
{
    bool on_link = true;
    for (const FramerDescription& framer : framers) {
        if (framer.kind == FramerKind::Dorv) {
            // It reads lines from the link itself and wants each write to be taken as it is.
            if (!on_link)
                throw framer.piece.error(
                    StackText::tr("dorv works only directly on the link: write it first"));
            if (link.kind == LinkKind::Tcp || link.kind == LinkKind::Udp)
                throw framer.piece.error(
                    StackText::tr("dorv waits for lines, which tcp: and udp: links don't; "
                                  "use rawtcp: or rawudp:"));
        }
        on_link = on_link && framer.kind == FramerKind::None;
    }
}
