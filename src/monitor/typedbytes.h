// Texts that a user gives to be sent: escapes and line endings.
//
//   written   sent
//   \r \n \t  carriage return, line feed, tab
//   \e \0     escape, NUL
//   \\        a backslash
//   \x41      the byte with these two hexadecimal digits
//   \c        at the end: nothing, and no line ending after it
#pragma once

#include <QByteArray>
#include <QString>

struct TypedBytes
{
    QByteArray bytes;  // all but the escapes in UTF-8
    bool ended = true; // whether a line ending is to follow
    QString fault;     // what is wrong with the text; empty when nothing is
    int column = 0;    // of the fault
};
TypedBytes typed_bytes(const QString& text);

enum class LineEnding { Cr, Lf, CrLf, None };

QByteArray bytes_of(LineEnding ending);
const char* name_of(LineEnding ending); // "cr", as in options
LineEnding next(LineEnding ending);     // the order of the key
// False when the name is none.
bool line_ending_named(const QString& name, LineEnding& ending);

// The bytes with each `mark` (the Enter key's '\r', or '\n' in a file) as that ending.
QByteArray with_ending(const QByteArray& bytes, char mark, LineEnding ending);
