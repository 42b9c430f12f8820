#include "monitor/bytetext.h"

#include <QString>
#include <QVector>
#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {
constexpr int LONGEST_SEQUENCE = 32; // parameters of colours in use are shorter
constexpr int MORE = 0;              // a take function wants more bytes

bool is_plain(char c)
{
    return (c >= 0x20 && c < 0x7f) || c == '\n' || c == '\r' || c == '\t' || c == '\b';
}

void escape_byte(char c, QByteArray& out)
{
    static constexpr char DIGITS[] = "0123456789abcdef";
    out += "\\x";
    out += DIGITS[std::uint8_t(c) >> 4];
    out += DIGITS[std::uint8_t(c) & 15];
}

// The bytes of the character that begins so; 1 for what begins none.
int character_size(std::uint8_t first)
{
    if (first >= 0xc2 && first < 0xe0)
        return 2;
    if (first >= 0xe0 && first < 0xf0)
        return 3;
    return first >= 0xf0 && first < 0xf5 ? 4 : 1;
}

bool may_continue(std::uint8_t first, std::uint8_t second)
{
    static constexpr struct
    {
        std::uint8_t first, least, most;
    } NARROW[] = {{0xe0, 0xa0, 0xbf}, {0xed, 0x80, 0x9f}, {0xf0, 0x90, 0xbf}, {0xf4, 0x80, 0x8f}};
    for (const auto& row : NARROW)
        if (row.first == first)
            return second >= row.least && second <= row.most;
    return (second & 0xc0) == 0x80;
}

// How many of the bytes are the beginning of one character; equal to size when it is whole.
int valid_part(const char* at, int available, int size)
{
    int count = 1;
    while (count < std::min(available, size) &&
           (count == 1 ? may_continue(std::uint8_t(at[0]), std::uint8_t(at[1]))
                       : (std::uint8_t(at[count]) & 0xc0) == 0x80))
        ++count;
    return count;
}
} // namespace

bool is_harmful(char32_t c)
{
    return (c >= 0x7f && c < 0xa0) || (c >= 0x200e && c <= 0x200f) ||
           (c >= 0x2028 && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
}

void ByteText::feed(const QByteArray& bytes, QByteArray& out)
{
    if (raw) {
        out += bytes;
        return;
    }
    const QByteArray all = held.isEmpty() ? bytes : held + bytes;
    held.clear();
    const char* at = all.constData();
    const char* const end = at + all.size();
    while (at < end) {
        const char* const special = std::find_if_not(at, end, is_plain);
        out.append(at, int(special - at));
        at = special;
        if (at == end)
            break;
        const int taken = take_special(at, end, out);
        if (taken == MORE) {
            held = QByteArray(at, int(end - at));
            break;
        }
        at += taken;
    }
}

void ByteText::finish(QByteArray& out)
{
    for (const char byte : held)
        escape_byte(byte, out);
    held.clear();
}

int ByteText::take_special(const char* at, const char* end, QByteArray& out)
{
    if (*at == '\x1b')
        return take_sequence(at, end, out);
    if (std::uint8_t(*at) >= 0x80)
        return take_character(at, end, out);
    escape_byte(*at, out);
    return 1;
}

int ByteText::take_sequence(const char* at, const char* end, QByteArray& out)
{
    const char* last = at + 1;
    if (last < end && *last == '[')
        for (++last; last < end && (*last == ';' || (*last >= '0' && *last <= '9')); ++last)
            ;
    const auto size = last + 1 - at;
    if (last == end && size <= LONGEST_SEQUENCE)
        return MORE;
    if (last == end || last == at + 1 || size > LONGEST_SEQUENCE ||
        std::strchr("mKCD", *last) == nullptr) {
        escape_byte(*at, out);
        return 1;
    }
    colours = colours || *last == 'm';
    out.append(at, int(size));
    return int(size);
}

int ByteText::take_character(const char* at, const char* end, QByteArray& out)
{
    const int available = int(end - at);
    const int size = character_size(std::uint8_t(*at));
    const int valid = valid_part(at, available, size);
    if (size > 1 && valid < size && valid == available)
        return MORE;
    if (size == 1 || valid < size) {
        escape_byte(*at, out);
        return 1;
    }
    const QString text = QString::fromUtf8(at, size);
    const char32_t code = text.toUcs4().value(0);
    if (is_harmful(code))
        out += "\\u" + QByteArray::number(code, 16).rightJustified(4, '0');
    else
        out.append(at, size);
    return size;
}
