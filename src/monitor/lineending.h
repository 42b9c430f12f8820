// What ends a line that is sent.
#pragma once

#include <QByteArray>
#include <QString>

enum class LineEnding { Cr, Lf, CrLf, None };

QByteArray bytes_of(LineEnding ending);
const char* name_of(LineEnding ending); // "cr", as in options
LineEnding next(LineEnding ending);     // the order of the key
// False when the name is none.
bool line_ending_named(const QString& name, LineEnding& ending);

// The bytes with each `mark` (the Enter key's '\r', or '\n' in a file) as that ending.
QByteArray with_ending(const QByteArray& bytes, char mark, LineEnding ending);
