// Texts that a user gives to be sent, with escapes.
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
