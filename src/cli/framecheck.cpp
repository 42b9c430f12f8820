#include "cli/framecheck.h"

#include "framers/qframerchan.h"
#include "framers/qframercnet.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"

#include <algorithm>
#include <string>

namespace {

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

QByteArray bytes_of(std::string_view view)
{
    return {view.data(), int(view.size())};
}

FrameVerdict good(std::string_view payload)
{
    return {true, bytes_of(payload), "good"};
}

FrameVerdict bad(const QString& reason)
{
    return {false, {}, reason};
}

FrameVerdict check_crc16(const QByteArray& frame)
{
    const auto parsed = Crc16Frame::parse(view(frame));
    return parsed ? good(parsed->payload) : bad("the CRC is wrong");
}

FrameVerdict check_rtu(const QByteArray& frame, int address)
{
    const auto parsed = RtuFrame::parse(view(frame));
    if (!parsed)
        return bad("the CRC is wrong");
    if (parsed->address != address)
        return bad(QStringLiteral("of address %1").arg(parsed->address));
    return good(parsed->payload);
}

FrameVerdict check_chan(const QByteArray& frame, const QByteArray& prefix)
{
    const auto parsed = ChanFrame::parse(view(frame), view(prefix));
    return parsed ? good(parsed->payload) : bad("another prefix");
}

FrameVerdict check_cnet(const QByteArray& frame, int target)
{
    if (const auto response = CnetLocalResponse::parse(view(frame)))
        return {true, {}, QStringLiteral("local response %1").arg(response->status)};
    const auto parsed = CnetFrame::parse(view(frame));
    if (!parsed)
        return bad("no data frame");
    const int address = parsed->address[0] << 8 | parsed->address[1];
    if (address != target)
        return bad("of " + QStringLiteral("%1").arg(address, 4, 16, QChar('0')).toUpper());
    return good(parsed->payload);
}

FrameVerdict check_rwlt(const QByteArray& frame)
{
    const auto parsed = RwltFrame::parse(view(frame));
    return parsed ? good(parsed->payload) : bad("no start or no end");
}

// "at+radiotx=3\rabc", whatever the command is.
FrameVerdict check_dorv_command(const QByteArray& frame)
{
    const int equals = int(frame.indexOf('='));
    const int end = int(frame.indexOf('\r'));
    bool number = false;
    const int size = frame.mid(equals + 1, end - equals - 1).toInt(&number);
    if (equals < 0 || end < equals || !number || size != frame.size() - end - 1)
        return bad("no send command");
    return good(view(frame).substr(std::size_t(end) + 1));
}

FrameVerdict check_dorv_report(const QByteArray& frame, bool raw)
{
    const int begin = int(frame.indexOf('+'));
    const auto in_name = [](char c) { return c == '+' || c == '_' || (c >= 'a' && c <= 'z'); };
    const auto name_end =
        std::find_if_not(frame.begin() + std::max(begin, 0), frame.end(), in_name);
    const std::string name(frame.begin() + std::max(begin, 0), name_end);
    const int line_end = int(frame.indexOf('\n')) + 1;
    if (begin < 0 || line_end == 0)
        return bad("no report");
    const std::string_view line = view(frame).substr(0, std::size_t(line_end));
    if (raw) {
        const DorvReport report = DorvReport::parse(line, name);
        return report.fault == DorvReport::NONE
                   ? good(view(QByteArray::fromHex(bytes_of(report.payload))))
                   : bad("no report");
    }
    const auto count = DorvReport::parse_count(line, name);
    const std::string_view payload = view(frame).substr(std::size_t(line_end));
    if (!count || *count != int(payload.size()))
        return bad("no report of the length that it gives");
    return good(payload);
}

FrameVerdict check_framer(const FramerDescription& framer, CaptureDirection direction,
                          const QByteArray& frame)
{
    switch (framer.kind) {
    case FramerKind::None:
        return good(view(frame));
    case FramerKind::Crc16:
        return check_crc16(frame);
    case FramerKind::Rtu:
        return check_rtu(frame, framer.number);
    case FramerKind::Chan:
        return check_chan(frame, framer.prefix);
    case FramerKind::Cnet:
        return check_cnet(frame, framer.number);
    case FramerKind::Rwlt:
        return check_rwlt(frame);
    case FramerKind::Dorv:
        return direction == CaptureDirection::Outbound
                   ? check_dorv_command(frame)
                   : check_dorv_report(frame, framer.number == DORV_RAW);
    }
    return {};
}

} // namespace

FrameVerdict check_frame(const QVector<FramerDescription>& framers, CaptureDirection direction,
                         const QByteArray& frame)
{
    FrameVerdict verdict = {true, frame, "good"};
    for (const FramerDescription& framer : framers) {
        const FrameVerdict inner = check_framer(framer, direction, verdict.payload);
        verdict.good = inner.good;
        verdict.text = inner.good ? inner.text : framer.piece.text + ": " + inner.text;
        if (!inner.good)
            break;
        verdict.payload = inner.payload;
    }
    return verdict;
}
