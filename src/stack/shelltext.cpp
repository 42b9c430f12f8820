#include "stack/shelltext.h"

#include <algorithm>
#include <cstring>

namespace {
// That mean themselves in every shell, anywhere in a word.
bool plain(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
           (code >= '0' && code <= '9') ||
           (code > 0 && code < 0x80 && std::strchr("%+,-./:@_", code));
}
} // namespace

QString shell_word(const QString& text)
{
    if (!text.isEmpty() && std::all_of(text.cbegin(), text.cend(), plain))
        return text;
    return '\'' + QString(text).replace('\'', "'\\''") + '\'';
}
