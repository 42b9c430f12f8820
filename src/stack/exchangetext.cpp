#include "stack/exchangetext.h"

#include "stack/typedtext.h"

QString sent_text(const QByteArray& bytes, int result)
{
    const bool complete = result == bytes.size();
    return "> " + shown_both(bytes) +
           (complete ? QString() : QStringLiteral("  (result %1)").arg(result));
}

QString received_text(const QByteArray& bytes, int result)
{
    if (result < 0)
        return QStringLiteral("< error %1").arg(result);
    return bytes.isEmpty() ? QString("< nothing in time") : "< " + shown_both(bytes);
}

QString note_text(const QString& text)
{
    QString one_line = text;
    return one_line.replace('\r', "\\r").replace('\n', "\\n");
}
