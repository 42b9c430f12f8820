#include "workbench/exchangerecord.h"

#include "stack/shelltext.h"
#include "stack/typedtext.h"
#include "workbench/linkwords.h"

#include <algorithm>

namespace {
constexpr int ROW = 16;    // bytes
constexpr int MOST = 2048; // bytes of a part that are shown; a window is slow with long texts

// "    31 32 33                                         123"
QString row_text(const QByteArray& bytes)
{
    QString text;
    for (const char byte : bytes)
        text += byte >= ' ' && byte <= '~' ? QChar(byte) : QChar('.');
    return "    " + shown(bytes).leftJustified(ROW * 3 + 1) + text + '\n';
}

QString rows_text(const QByteArray& bytes)
{
    QString text;
    for (int at = 0; at < std::min(int(bytes.size()), MOST); at += ROW)
        text += row_text(bytes.mid(at, ROW));
    if (bytes.size() > MOST)
        text +=
            "    " + ExchangeRecord::tr("... and %1 bytes more").arg(bytes.size() - MOST) + '\n';
    return text;
}

QString ms_text(double ms)
{
    return ExchangeRecord::tr("%1 ms").arg(ms, 0, 'f', 1);
}
} // namespace

QString ExchangeRecord::wait_text() const
{
    return wait_ms < 0 ? QString() : ms_text(wait_ms);
}

QString ExchangeRecord::sentence() const
{
    switch (ending) {
    case ExchangeEnding::Answered:
        return tr("Answered after %1, bytes of payload: %2.").arg(wait_text()).arg(reply.size());
    case ExchangeEnding::NotSent:
        return tr("The frame could not be sent: what is below the frame didn't take it; the log "
                  "shows why.");
    case ExchangeEnding::NoAnswer:
        return tr("Nothing came within %1 ms: is the device on? Check rate, format and frame, or "
                  "give it a longer time-out.")
            .arg(request.stack.timeout_ms);
    case ExchangeEnding::BadAnswer:
        return tr("What came is no frame of %1: check rate, format and frame.")
            .arg(framers_text(request.stack.framers));
    case ExchangeEnding::Lost:
        return LinkWords::sentence(link);
    case ExchangeEnding::Stopped:
        return tr("The exchange was stopped before it was sent.");
    }
    return {};
}

QString ExchangeRecord::details() const
{
    QString text = tr("Request, bytes of payload: %1").arg(request.payload.size()) + '\n' +
                   rows_text(request.payload);
    for (const WirePart& part : wire) {
        const QString line = part.sent ? tr("%1: sent on the wire, bytes: %2")
                                       : tr("%1: received on the wire, bytes: %2");
        text += line.arg(ms_text(part.at_ms)).arg(part.bytes.size()) + '\n' + rows_text(part.bytes);
    }
    if (ending != ExchangeEnding::Answered)
        return text + sentence();
    return text + tr("Reply after %1, bytes of payload: %2").arg(wait_text()).arg(reply.size()) +
           '\n' + rows_text(reply);
}

QString ExchangeRecord::command() const
{
    const QStringList words = {"tarnwickctl",
                               "frame",
                               "exchange",
                               "--hex",
                               shown(request.payload),
                               "--read",
                               QString::number(request.most),
                               "--link",
                               link_text(request.stack.link),
                               "--frame",
                               framers_text(request.stack.framers),
                               "--timeout",
                               QString::number(request.stack.timeout_ms)};
    QStringList quoted;
    for (const QString& word : words)
        quoted += shell_word(word);
    return quoted.join(' ');
}
