#include "terminal/sendtext.h"

#include <gtest/gtest.h>

TEST(SendText, GivesTheBytesOrTheOffenderAndItsPlace)
{
    const auto escaped = send_text_escaped, hex = send_text_hex;
    using Offender = std::tuple<SendText::Error, int, QChar>;
    const auto bad = [](SendText::Error error, int offset, char c) {
        return Offender(error, offset, QChar::fromLatin1(c));
    };
    const Offender none = bad(SendText::NONE, 0, 0);
    const std::tuple<SendText (*)(const QByteArray&), const char*, QByteArray, Offender> rows[] = {
        {escaped, R"(plain\r\n\t\a\b\f\v\\\'\")", "plain\r\n\t\a\b\f\v\\'\"", none},
        {escaped, R"(a\07)", QByteArray("a\0007", 3), none},
        {escaped, R"(ab\x41)", "ab", bad(SendText::BAD_ESCAPE, 3, 'x')},
        {escaped, R"(\\\)", "\\", bad(SendText::ESCAPE_AT_END, 3, '\\')},
        {escaped, "\xC3\xA9\\\xC3\xA9", "\xC3\xA9", bad(SendText::BAD_ESCAPE, 3, '\xC3')},
        {hex, " \t\n\v\f\r", "", none},
        {hex, "09 aFAf", "\x09\xAF\xAF", none},
        {hex, "4 1", "\x04", none}, // the last one is still being typed
        {hex, "ABC ", "\xAB\x0C", none},
        {hex, "0x41", "", bad(SendText::NOT_HEX, 1, 'x')},
        {hex, "41 /", "A", bad(SendText::NOT_HEX, 3, '/')},
        {hex, "41:", "A", bad(SendText::NOT_HEX, 2, ':')},
        {hex, "4@", "", bad(SendText::NOT_HEX, 1, '@')},
        {hex, "G", "", bad(SendText::NOT_HEX, 0, 'G')},
        {hex, "`", "", bad(SendText::NOT_HEX, 0, '`')},
        {hex, "g", "", bad(SendText::NOT_HEX, 0, 'g')},
        {hex, "ff\xC2\xA0", "\xFF", bad(SendText::NOT_HEX, 2, '\xC2')},
    };
    for (const auto& [parse, text, bytes, offender] : rows) {
        const SendText parsed = parse(text);
        EXPECT_EQ(parsed.bytes, bytes) << text;
        EXPECT_EQ(Offender(parsed.error, parsed.offset, parsed.character), offender) << text;
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
