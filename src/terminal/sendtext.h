// The text of the send area as bytes for the wire: raw, with escapes, or as hexadecimal digits.
#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>

enum class SendMode { Escaped, Raw, Hex };

struct SendText
{
    enum Error {
        NONE,
        BAD_ESCAPE,    // a backslash before a byte that makes no escape
        ESCAPE_AT_END, // a backslash with nothing after it
        NOT_HEX,       // neither a hexadecimal digit nor white space
    };

    QByteArray bytes; // what came out before the error, if there is one
    Error error = NONE;
    int offset = 0;  // of the offending byte in the input; after the backslash for ESCAPE_AT_END
    QChar character; // the offending byte, read as Latin-1

    QString error_text() const; // for the user
};

// Counts bytes in the local 8-bit encoding.
SendText send_text(const QString& typed, SendMode mode);

// Escapes: \r \n \t \a \b \f \v \\ \' \" and \0, each one byte.
SendText send_text_escaped(const QByteArray& text);

// Pairs of digits make a byte, in either case; a lone digit before white space is a byte of
// its own; one at the very end is still being typed and makes none.
SendText send_text_hex(const QByteArray& text);
