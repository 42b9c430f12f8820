// Texts as words of a command line.
#pragma once

#include <QString>

// One word for a POSIX shell, in quotes where it needs them.
QString shell_word(const QString& text);
