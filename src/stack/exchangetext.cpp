#include "stack/exchangetext.h"

#include "stack/typedtext.h"

#include <algorithm>

namespace {
constexpr int SHORTEST_TEXT = 3; // fewer bytes that look like text mostly are none

// In hexadecimal; text, as in AT commands, as text too.
QString both_forms(const QByteArray& bytes)
{
    const bool text = std::all_of(bytes.cbegin(), bytes.cend(), [](char byte) {
        return (byte >= ' ' && byte <= '~') || byte == '\r' || byte == '\n';
    });
    if (!text || bytes.size() < SHORTEST_TEXT)
        return shown(bytes);
    return shown(bytes) + "  \"" + note_text(QString::fromLatin1(bytes)) + '"';
}
} // namespace

QString sent_text(const QByteArray& bytes, int result)
{
    const bool complete = result == bytes.size();
    return "> " + both_forms(bytes) +
           (complete ? QString() : QStringLiteral("  (result %1)").arg(result));
}

QString received_text(const QByteArray& bytes, int result)
{
    if (result < 0)
        return QStringLiteral("< error %1").arg(result);
    return bytes.isEmpty() ? QString("< nothing in time") : "< " + both_forms(bytes);
}

QString note_text(const QString& text)
{
    QString one_line = text;
    return one_line.replace('\r', "\\r").replace('\n', "\\n");
}
