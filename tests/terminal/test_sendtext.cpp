#include "sendtext.h"

#include <gtest/gtest.h>

namespace {

struct Row
{
    const char* text;
    QByteArray bytes;
    SendText::Error error;
    int offset;
    char character;
};

void expect(const Row& row, const SendText& parsed)
{
    EXPECT_EQ(parsed.bytes, row.bytes) << row.text;
    EXPECT_EQ(parsed.error, row.error) << row.text;
    EXPECT_EQ(parsed.offset, row.offset) << row.text;
    EXPECT_EQ(parsed.character, QChar::fromLatin1(row.character)) << row.text;
}

} // namespace

TEST(SendText, ResolvesEscapes)
{
    const Row rows[] = {
        {"", "", SendText::NONE, 0, 0},
        {R"(plain)", "plain", SendText::NONE, 0, 0},
        {R"(\r\n\t\a\b\f\v\\\'\")", "\r\n\t\a\b\f\v\\'\"", SendText::NONE, 0, 0},
        {R"(a\0b)", QByteArray("a\0b", 3), SendText::NONE, 0, 0},
        {R"(\07)",
         QByteArray("\0"
                    "7",
                    2),
         SendText::NONE, 0, 0},
        {R"(ab\x41)", "ab", SendText::BAD_ESCAPE, 3, 'x'},
        {R"(\1)", "", SendText::BAD_ESCAPE, 1, '1'},
        {R"(abc\)", "abc", SendText::ESCAPE_AT_END, 4, '\\'},
        {R"(\\\)", "\\", SendText::ESCAPE_AT_END, 3, '\\'},
        {"\xC3\xA9\\q", "\xC3\xA9", SendText::BAD_ESCAPE, 3, 'q'},
        {"\\\xC3\xA9", "", SendText::BAD_ESCAPE, 1, '\xC3'},
    };
    for (const Row& row : rows)
        expect(row, send_text_escaped(row.text));
}

TEST(SendText, ReadsHexadecimal)
{
    const Row rows[] = {
        {"", "", SendText::NONE, 0, 0},
        {" \t\n\v\f\r", "", SendText::NONE, 0, 0},
        {"41 42", "AB", SendText::NONE, 0, 0},
        {"4142", "AB", SendText::NONE, 0, 0},
        {"4 1", "\x04", SendText::NONE, 0, 0},
        {"4 1 ", "\x04\x01", SendText::NONE, 0, 0},
        {"aB", "\xAB", SendText::NONE, 0, 0},
        {"ABC", "\xAB", SendText::NONE, 0, 0},
        {"ABC ", "\xAB\x0C", SendText::NONE, 0, 0},
        {"7", "", SendText::NONE, 0, 0},
        {"0x41", "", SendText::NOT_HEX, 1, 'x'},
        {"G", "", SendText::NOT_HEX, 0, 'G'},
        {"41 4", "A", SendText::NONE, 0, 0},
        {"41 /", "A", SendText::NOT_HEX, 3, '/'},
        {"41:", "A", SendText::NOT_HEX, 2, ':'},
        {"4@", "", SendText::NOT_HEX, 1, '@'},
        {"g`", "", SendText::NOT_HEX, 0, 'g'},
        {"ff\xC2\xA0", "\xFF", SendText::NOT_HEX, 2, '\xC2'},
    };
    for (const Row& row : rows)
        expect(row, send_text_hex(row.text));
}
