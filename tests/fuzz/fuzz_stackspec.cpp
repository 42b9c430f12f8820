// Links and framers as a user writes them: what was understood, written out in full, means the
// same.

#include "fuzzing.h"
#include "specfuzz.h"
#include "stacktext.h"

namespace {

const char* const KINDS[] = {"serial", "tcp", "udp", "rawtcp", "rawudp", "broadcast"};
const char* const FRAMERS[] = {"none", "crc16", "rtu:", "chan:", "cnet:", "rwlt", "dorv:"};
const char* const MODES[] = {"raw", "mac", "pmac", "radio", "data"};

QString written(const LinkDescription& link)
{
    const QString kind = QString(KINDS[int(link.kind)]) + ':';
    if (link.kind == LinkKind::Serial) {
        const PortSettings& settings = link.settings;
        require(settings.BaudRate >= 1 && settings.DataBits >= 5 && settings.DataBits <= 8);
        const char* const stops[] = {"1", "1.5", "2"};
        const char* const flows[] = {"none", "rtscts", "xonxoff"};
        return kind + link.port + ',' + QString::number(settings.BaudRate) + ',' +
               QString::number(settings.DataBits) + "NOEMS"[settings.Parity] +
               stops[settings.StopBits] + ',' + flows[settings.FlowControl];
    }
    require(link.remote_port >= 1 && link.remote_port <= 65535 && link.host.size() <= 63);
    if (link.kind == LinkKind::Broadcast)
        return kind + QString::number(link.remote_port);
    if (link.kind == LinkKind::RawTcp || link.kind == LinkKind::RawUdp)
        for (const QChar c : link.host)
            require(c == '.' || (c >= '0' && c <= '9'));
    const bool brackets = link.host.contains(':') || link.host.startsWith('[');
    return kind + (brackets ? '[' + link.host + ']' : link.host) + ':' +
           QString::number(link.remote_port);
}

QString written(const QVector<FramerDescription>& framers)
{
    QStringList texts;
    for (const FramerDescription& framer : framers) {
        QString text = FRAMERS[int(framer.kind)];
        if (framer.kind == FramerKind::Rtu)
            text += QString::number(framer.number);
        if (framer.kind == FramerKind::Chan)
            text += framer.prefix.toHex();
        if (framer.kind == FramerKind::Cnet)
            text += QString::number(framer.number | 0x10000, 16).mid(1);
        if (framer.kind == FramerKind::Dorv)
            text += MODES[framer.number + 1];
        texts += text;
    }
    return texts.join('+');
}

} // namespace

// The first line is a link, what follows it framers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const QString link_text = input.section('\n', 0, 0);
    const QString framers_text = input.section('\n', 1);
    const auto link = parsed(link_text, parse_link);
    if (link)
        require(written(parse_link(written(*link))) == written(*link));
    const auto framers = parsed(framers_text, parse_framers);
    if (!framers)
        return 0;
    require(!framers->isEmpty());
    require(written(parse_framers(written(*framers))) == written(*framers));
    parsed(framers_text, [&](const Piece&) {
        check_fit(link.value_or(LinkDescription()), *framers);
        return true;
    });
    return 0;
}
