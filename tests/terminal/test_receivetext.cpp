#include "terminal/receivetext.h"

#include <QTextCursor>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <random>

namespace {

QString shown(const std::vector<QByteArray>& chunks)
{
    QTextDocument document;
    QTextCursor end(&document);
    CutText text;
    for (const QByteArray& chunk : chunks) {
        const TextStep step =
            text.next(QByteArray(chunk.constData(), chunk.size())); // gone at once
        end.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, step.replaced);
        end.insertText(step.text);
    }
    return document.toPlainText();
}

} // namespace

TEST(ReceiveText, BeginsAFrameAfterALongerSilence)
{
    const QTime noon(12, 0, 0), midnight(23, 59, 59, 999);
    const struct
    {
        ReceiveOptions options; // frames, stamps, hexadecimal, ms
        QTime last;
        int ms;
        bool line_open;
        const char* prefix;
        const char* data;
    } rows[] = {
        {{false, false, false, 5}, noon, 6, true, "", "A\r\xFF"},
        {{false, false, true, 5}, noon, 6, true, "", "41 0D FF "},
        {{true, false, false, 5}, noon, 5, true, "", "A\r\xFF"},
        {{true, false, false, 5}, noon, 6, true, "\n", "A\r\xFF"},
        {{true, false, false, 5}, noon, 6, false, "", "A\r\xFF"},
        {{false, true, false, 5}, noon, 5, true, "", "A\r\xFF"},
        {{false, true, false, 5}, noon, 6, true, "[12:00:00.006] ", "A\r\xFF"},
        {{true, true, true, 5}, midnight, 6, true, "\n[00:00:00.005] ", "41 0D FF "},
        {{true, true, false, 5}, midnight, 6, false, "[00:00:00.005] ", "A\r\xFF"},
    };
    for (const auto& row : rows) {
        const ChunkText text =
            chunk_text("A\r\xFF", row.options, row.last, row.last.addMSecs(row.ms), row.line_open);
        EXPECT_EQ(text.prefix, row.prefix);
        EXPECT_EQ(text.data, row.data);
    }
    EXPECT_EQ(sent_line("a\\t\u4f60", QTime(), false), "a\\t?");
    EXPECT_EQ(sent_line(QString("a%1b").arg(QChar(0)), QTime(1, 2, 3, 4), true),
              "\n[01:02:03.004] a");
}

TEST(CutText, MakesOfAnyChunksWhatTheWholeMakes)
{
    const std::vector<QByteArray> parts = {
        "a",    "\r",   "\n",       "\r\n",     "\xC2\xB5",     "\xE6\xB8\xA9", "\xF0\x9F\x98\x80",
        "\x80", "\xE6", "\xF0\x9F", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80",
        "\xFF"};
    for (unsigned seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        QByteArray bytes = "x";
        for (int i = 0; i < 12; ++i)
            bytes += parts[random() % (seed % 2 == 0 ? 7 : parts.size())];
        std::vector<QByteArray> chunks;
        for (int at = 0; at < bytes.size(); at += int(chunks.back().size()))
            chunks.push_back(bytes.mid(at, 1 + int(random() % 7)));
        ASSERT_EQ(shown(chunks), shown({bytes})) << bytes.toHex(' ').constData();
    }
}

TEST(CutText, ShowsAtOnceAndMendsOnlyWhatTouches)
{
    const std::pair<std::vector<QByteArray>, const char*> rows[] = {
        {{"a\r"}, "a\n"},
        {{"\xE6\xB8"}, "??"},
        {{"\r", "", "\n", "\n"}, "\n\n"},
        {{"\r", QByteArray(1, '\0'), "\n"}, "\n\n"},
        {{QByteArray("\r\0\r", 3), "\n"}, "\n\n"},
        {{"\xC2", QByteArray("\xB5\0\xE6", 3), "\xB8"}, "\xC2\xB5?"},
        {{"\xC2", "41 ", "\xB5"}, "?41 ?"}, // shown as hexadecimal in between
    };
    for (const auto& [chunks, expected] : rows)
        EXPECT_EQ(shown(chunks).replace(QChar::ReplacementCharacter, '?'), QString(expected));
}
