#include "terminal/sendtext.h"

#include <gtest/gtest.h>

TEST(SendText, GivesTheBytesOrTheOffenderAndItsPlace)
{
    const auto escaped = send_text_escaped, hex = send_text_hex;
    const struct
    {
        SendText (*parse)(const QByteArray&);
        const char* text;
        QByteArray bytes;
        SendText::Error error = SendText::NONE;
        int offset = 0;
        char character = 0;
    } rows[] = {
        {escaped, R"(plain)", "plain"},
        {escaped, R"(\r\n\t\a\b\f\v\\\'\")", "\r\n\t\a\b\f\v\\'\""},
        {escaped, R"(a\07)", QByteArray("a\0007", 3)},
        {escaped, R"(ab\x41)", "ab", SendText::BAD_ESCAPE, 3, 'x'},
        {escaped, R"(\\\)", "\\", SendText::ESCAPE_AT_END, 3, '\\'},
        {escaped, "\xC3\xA9\\\xC3\xA9", "\xC3\xA9", SendText::BAD_ESCAPE, 3, '\xC3'},
        {hex, "", ""},
        {hex, " \t\n\v\f\r", ""},
        {hex, "09 aFAf", "\x09\xAF\xAF"},
        {hex, "4 1", "\x04"}, // the last one is still being typed
        {hex, "ABC ", "\xAB\x0C"},
        {hex, "0x41", "", SendText::NOT_HEX, 1, 'x'},
        {hex, "41 /", "A", SendText::NOT_HEX, 3, '/'},
        {hex, "41:", "A", SendText::NOT_HEX, 2, ':'},
        {hex, "4@", "", SendText::NOT_HEX, 1, '@'},
        {hex, "G", "", SendText::NOT_HEX, 0, 'G'},
        {hex, "`", "", SendText::NOT_HEX, 0, '`'},
        {hex, "g", "", SendText::NOT_HEX, 0, 'g'},
        {hex, "ff\xC2\xA0", "\xFF", SendText::NOT_HEX, 2, '\xC2'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const SendText parsed = row.parse(row.text);
        EXPECT_EQ(parsed.bytes, row.bytes);
        EXPECT_EQ(parsed.error, row.error);
        EXPECT_EQ(parsed.offset, row.offset);
        EXPECT_EQ(parsed.character, QChar::fromLatin1(row.character));
    }
}

TEST(SendText, TakesTheModeAndSaysWhatIsWrong)
{
    const std::tuple<SendMode, QString, QByteArray, const char*> rows[] = {
        {SendMode::Raw, "41\\q\u4f60", "41\\q\xE4\xBD\xA0", ""},
        {SendMode::Escaped, "41\\n", "41\n", ""},
        {SendMode::Escaped, "\u4f60\\q", "\xE4\xBD\xA0", "format error at 4: q"},
        {SendMode::Escaped, "abc\\", "abc", "format error at 4: \\"},
        {SendMode::Hex, "41", "A", ""},
        {SendMode::Hex, "4%1", "", "char '%' at offset 1 is not a hex number"},
    };
    for (const auto& [mode, typed, bytes, error] : rows) {
        const SendText parsed = send_text(typed, mode);
        EXPECT_EQ(parsed.bytes, bytes) << qPrintable(typed);
        EXPECT_EQ(parsed.error_text(), error) << qPrintable(typed);
    }
}
