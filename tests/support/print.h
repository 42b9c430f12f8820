// Qt's strings as text in GoogleTest's messages.
#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << bytes.size() << " bytes " << bytes.left(64).toPercentEncoding(" ").toStdString();
}

inline void PrintTo(const QStringList& texts, std::ostream* out)
{
    *out << '[' << texts.join(", ").toStdString() << ']';
}
