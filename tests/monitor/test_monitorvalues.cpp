// The values that a session of the monitor is made of, as tables.
#include "monitor/bytetext.h"
#include "monitor/keys.h"
#include "monitor/lineedit.h"
#include "monitor/lineending.h"
#include "monitor/logfile.h"
#include "monitor/pacing.h"
#include "monitor/script.h"
#include "monitor/silence.h"
#include "monitor/view.h"
#include "print.h"
#include "sandbox.h"
#include "stack/typedbytes.h"

#include <gtest/gtest.h>

namespace {
Chunk chunk(std::int64_t ms, const QByteArray& bytes, Direction direction = Direction::In)
{
    Chunk made;
    made.time_ns = ms * NS_PER_MS;
    made.bytes = bytes;
    made.direction = direction;
    return made;
}

TEST(ByteText, IsWholeHoweverItIsCutAndDoesNoHarm)
{
    const struct
    {
        QByteArray bytes;
        QByteArray shown;
    } rows[] = {
        {"plain\r\n\ttext\b", "plain\r\n\ttext\b"},
        {"\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", "\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80"},
        {"\x1b[31mred\x1b[m \x1b[K\x1b[2D", "\x1b[31mred\x1b[m \x1b[K\x1b[2D"},
        {"\x1b[2J\x1b]0;title\x07\x1b"
         "c",
         "\\x1b[2J\\x1b]0;title\\x07\\x1bc"},
        {"\x1b[6n\x1b[?25l", "\\x1b[6n\\x1b[?25l"},
        {"\xff\xc0\x80\x80 \xed\xa0\x80", "\\xff\\xc0\\x80\\x80 \\xed\\xa0\\x80"},
        {"\xe2\x82 cut", "\\xe2\\x82 cut"},
        {"\xf5\xf0\x80\x80\x80", "\\xf5\\xf0\\x80\\x80\\x80"},
        {"\xc2\x9b"
         "2J \xe2\x80\xae",
         "\\u009b2J \\u202e"}, // C1; text turned round
        {"end \xe2\x82", "end \\xe2\\x82"},
        {QByteArray("\0\x7f", 2), "\\x00\\x7f"},
    };
    for (const auto& row : rows) {
        for (int piece = 1; piece <= row.bytes.size(); ++piece) {
            ByteText text;
            QByteArray out;
            for (int at = 0; at < row.bytes.size(); at += piece)
                text.feed(row.bytes.mid(at, piece), out);
            text.finish(out);
            EXPECT_EQ(out, row.shown) << piece;
        }
        QByteArray raw;
        ByteText(true).feed(row.bytes, raw);
        EXPECT_EQ(raw, row.bytes);
    }
    // No sequence, however long, is held back for ever.
    ByteText text;
    QByteArray out;
    text.feed("\x1b[" + QByteArray(100, '1'), out);
    EXPECT_TRUE(out.startsWith("\\x1b[111"));
}

TEST(Keys, AfterThePrefixAreCommandsInAnyForm)
{
    const struct
    {
        QByteArray keys;
        QByteArray sent;
        std::optional<KeyAction> action;
        char unknown;
    } rows[] = {
        {"abc\r\x03", "abc\r\x03", {}, 0}, {"\x14q", "", KeyAction::Quit, 0},
        {"\x14Q", "", KeyAction::Quit, 0}, {"\x14\x11", "", KeyAction::Quit, 0},
        {"\x14?", "", KeyAction::Help, 0}, {"\x14/", "", KeyAction::Strings, 0},
        {"\x14\x14z", "\x14z", {}, 0},     {"\x14z", "", {}, 'z'},
    };
    for (const auto& row : rows)
        for (int piece : {1, 2, 100}) {
            KeyReader reader;
            QByteArray sent;
            std::optional<KeyAction> action;
            char unknown = 0;
            for (int from = 0; from < row.keys.size(); from += piece) {
                const QByteArray keys = row.keys.mid(from, piece);
                KeyEvent event;
                for (int at = 0; at < keys.size();) {
                    at += reader.take(keys, at, event);
                    sent += event.bytes;
                    action = event.action ? event.action : action;
                    unknown = event.unknown != 0 ? event.unknown : unknown;
                }
            }
            EXPECT_EQ(sent, row.sent);
            EXPECT_EQ(action, row.action) << row.keys.toHex().constData();
            EXPECT_EQ(unknown, row.unknown);
        }
    // What was typed before a command comes before it.
    KeyReader reader;
    KeyEvent event;
    EXPECT_EQ(reader.take("ab\x14qcd", 0, event), 2);
    EXPECT_EQ(event.bytes, "ab");
    EXPECT_EQ(reader.take("ab\x14qcd", 2, event), 2);
    EXPECT_EQ(event.action, KeyAction::Quit);
}

TEST(TypedBytes, TakeEscapesAndRefuseOthers)
{
    const struct
    {
        const char* text;
        QByteArray bytes;
        bool ended;
        int fault; // column, -1 for none
    } rows[] = {
        {"AT", "AT", true, -1},
        {R"(a\r\n\t\e\\b)", "a\r\n\t\x1b\\b", true, -1},
        {R"(\x41\xfF)", "A\xff", true, -1},
        {R"(\0)", QByteArray(1, '\0'), true, -1},
        {R"(no end\c)", "no end", false, -1},
        {"\xc3\xa9", "\xc3\xa9", true, -1},
        {R"(ab\q)", "ab", true, 2},
        {R"(\x4)", "", true, 0},
        {R"(\x-1)", "", true, 0},
        {R"(\x1 )", "", true, 0},
        {R"(a\)", "a", true, 1},
        {R"(\cmore)", "", true, 0},
    };
    for (const auto& row : rows) {
        const TypedBytes typed = typed_bytes(row.text);
        EXPECT_EQ(typed.bytes, row.bytes) << row.text;
        EXPECT_EQ(typed.ended, row.ended) << row.text;
        EXPECT_EQ(typed.fault.isEmpty() ? -1 : typed.column, row.fault) << row.text;
    }
    EXPECT_EQ(with_ending("a\nb\n", '\n', LineEnding::CrLf), "a\r\nb\r\n");
    EXPECT_EQ(with_ending("a\r", '\r', LineEnding::None), "a");
}

TEST(LineEdit, HasTheHabitsOfReadline)
{
    History history;
    for (const char* line : {"first one", "second", "third one", "second"})
        history.add(line);
    EXPECT_EQ(history.lines(), QStringList({"first one", "third one", "second"}));
    const struct
    {
        QByteArray keys;
        const char* text;
        int cursor;
    } rows[] = {
        {"abc\x01X", "Xabc", 1},
        {"abc\x1b[D\x1b[D\x1b[3~Y", "aYc", 2},
        {"abc\x02\x7f", "ac", 1},
        {"one two\x17X", "one X", 5},
        {"one two\x1b"
         "bX",
         "one Xtwo", 5},
        {"one two\x01\x1b"
         "d!",
         "! two", 1},
        {"one two\x15new ", "new ", 4},
        {"one two\x01\x0b\x19\x19", "one twoone two", 14},
        {"typed\x1b[A\x1b[A", "third one", 9},
        {"typed\x1b[A\x1b[A\x1b[B\x1b[B", "typed", 5},
        {"\x10\x10\x10\x10\x10", "first one", 9},
        {"one\x12", "third one", 9},
        {"one\x12\x12", "first one", 9},
        {"\x12sx\x7f\x12t", "first one", 9},
        {"ird\x12\x07!", "ird!", 4},
        {"\xc3\xa9x\x1b[D\x7f", "x", 0},
        {"a\x1b[5~b", "ab", 2}, // page up means nothing
    };
    for (const auto& row : rows) {
        LineEdit edit(history);
        EXPECT_EQ(edit.take(row.keys, 0), row.keys.size());
        EXPECT_EQ(edit.text(), row.text);
        EXPECT_EQ(edit.cursor(), row.cursor) << row.text;
    }
    LineEdit edit(history);
    EXPECT_EQ(edit.take("done\rnext", 0), 5);
    EXPECT_EQ(edit.state(), LineEdit::State::Done);
    edit.go_on();
    edit.take("\x08\x08\x03", 0);
    EXPECT_EQ(edit.text(), "do");
    EXPECT_EQ(edit.state(), LineEdit::State::GivenUp);
}

TEST(SilenceCut, EndsFramesBySilenceDirectionAndLength)
{
    SilenceCut cut(10 * NS_PER_MS);
    EXPECT_TRUE(cut.feed(chunk(100, "ab")).isEmpty());
    EXPECT_TRUE(cut.feed(chunk(110, "cd")).isEmpty()); // as long as the gap, not longer
    const auto first = cut.feed(chunk(121, "ef"));
    ASSERT_EQ(first.size(), 1);
    EXPECT_EQ(first[0].bytes, "abcd");
    EXPECT_EQ(first[0].time_ns, 100 * NS_PER_MS);
    EXPECT_EQ(cut.deadline(), 131 * NS_PER_MS + 1);
    const auto turned = cut.feed(chunk(122, "out", Direction::Out));
    ASSERT_EQ(turned.size(), 1);
    EXPECT_EQ(turned[0].direction, Direction::In);
    EXPECT_FALSE(cut.expire(132 * NS_PER_MS));
    EXPECT_EQ(cut.expire(132 * NS_PER_MS + 1)->bytes, "out");
    EXPECT_FALSE(cut.deadline());
    const auto full = cut.feed(chunk(200, QByteArray(2 * SilenceCut::FRAME_MAX + 1, 'x')));
    ASSERT_EQ(full.size(), 2);
    EXPECT_EQ(cut.finish()->bytes, "x");
}

TEST(View, ShowsTheSameBytesInEachForm)
{
    const auto shown = [](const ViewOptions& options) {
        View view(options);
        QByteArray out;
        view.add(chunk(1000, "one\r\ntw"), out);
        view.add(chunk(1005, "o\n"), out);
        view.add(chunk(1006, "AT", Direction::Out), out);
        view.add(chunk(1500, QByteArray("\0\xff", 2)), out);
        view.note("said", 1600 * NS_PER_MS, out);
        return out;
    };
    ViewOptions options;
    EXPECT_EQ(shown(options), "one\r\ntwo\n\\x00\\xff\n[said]\n");
    options.stamps = StampKind::Delta;
    EXPECT_EQ(shown(options), "+0.000000 one\r\n+0.000000 two\n+0.500000 \\x00\\xff\n"
                              "+0.100000 [said]\n");
    options.gap_ns = 2 * NS_PER_MS;
    options.echo = true;
    EXPECT_EQ(shown(options), "+0.000000 one\r\n+0.000000 tw\n+0.005000 o\n+0.001000 AT\n"
                              "+0.494000 \\x00\\xff\n+0.100000 [said]\n");
    options = {};
    options.hex = true;
    options.echo = true;
    EXPECT_EQ(shown(options), "< 6f 6e 65 0d 0a 74 77 6f 0a                       one..two.\n"
                              "> 41 54                                            AT\n"
                              "< 00 ff                                            ..\n[said]\n");
    options = {};
    options.json = true;
    EXPECT_EQ(shown(options),
              "{\"direction\":\"in\",\"time_ns\":1000000000,\"hex\":\"6f 6e 65 0d 0a 74 77 6f 0a\","
              "\"text\":\"one\\r\\ntwo\\n\"}\n"
              "{\"direction\":\"out\",\"time_ns\":1006000000,\"hex\":\"41 54\",\"text\":\"AT\"}\n"
              "{\"direction\":\"in\",\"time_ns\":1500000000,\"hex\":\"00 ff\",\"text\":\"\\u0000"
              "\xef\xbf\xbd\"}\n{\"event\":\"said\",\"time_ns\":1600000000}\n");
}

TEST(View, ShowsWhatAFramerFoundLineByLine)
{
    View view({});
    QByteArray out;
    Chunk frame = chunk(1, "good");
    frame.whole = true;
    view.add(frame, out);
    frame.damaged = true;
    view.add(frame, out);
    EXPECT_EQ(out, "good\n[bad frame: 67 6f 6f 64]\n");
    // Half a character is shown in the end, though nothing follows.
    out.clear();
    view.add(chunk(1000, "\xe2\x82"), out);
    EXPECT_EQ(view.deadline(), 1000 * NS_PER_MS + View::HOLD_NS);
    view.expire(*view.deadline(), out);
    view.note("said", 2000 * NS_PER_MS, out);
    EXPECT_EQ(out, "\\xe2\\x82\n[said]\n");
}

TEST(Stamps, HaveDateMicrosecondsAndZone)
{
    qputenv("TZ", "XYZ-05:30");
    EXPECT_EQ(stamp_text(StampKind::Iso, 1'000'123'456'789, {}),
              "1970-01-01T05:46:40.123456+05:30 ");
    EXPECT_EQ(stamp_text(StampKind::Time, 1'000'123'456'789, {}), "05:46:40.123 ");
    qunsetenv("TZ");
    EXPECT_EQ(stamp_text(StampKind::Delta, 5'000, 2'000'005'000), "-2.000000 ");
}

TEST(SendQueue, PausesAfterCharactersAndLines)
{
    const auto times = [](const Pacing& pacing) {
        SendQueue queue(pacing);
        queue.add("a\r\nb\rc");
        QByteArray story;
        std::int64_t now = 0;
        while (queue.size() > 0) {
            now = std::max(now, *queue.due());
            const QByteArray ready = queue.ready(now);
            story += QByteArray::number(int(now)) + '=' + ready + ' ';
            queue.taken(int(ready.size()), now);
        }
        return story.replace('\r', 'R').replace('\n', 'N');
    };
    EXPECT_EQ(times({0, 0}), "0=aRNbRc ");
    EXPECT_EQ(times({2, 0}), "0=a 2=R 4=N 6=b 8=R 10=c ");
    EXPECT_EQ(times({0, 7}), "0=aRN 7=bR 14=c ");
    EXPECT_EQ(times({2, 7}), "0=a 2=R 4=N 11=b 13=R 20=c ");
}

TEST(Script, RepliesInTurnAndLooksBehindEachMatch)
{
    const QRegularExpression login("ogin: ?$");
    Script script({{login, "root"}, {QRegularExpression("word"), "secret"}},
                  QRegularExpression("login"));
    EXPECT_TRUE(script.feed("word lo").isEmpty());
    EXPECT_EQ(script.feed("gin:"), QVector<QByteArray>{"root"});
    EXPECT_EQ(script.feed(" password"), QVector<QByteArray>{"secret"});
    EXPECT_FALSE(script.reached()); // the login before counts no more
    script.feed(QByteArray(2 * Script::WINDOW, 'x') + "log");
    script.feed("in");
    EXPECT_TRUE(script.reached());
    EXPECT_FALSE(Script().has_goal());
    Script cut({{QRegularExpression("a"), ""}}, QRegularExpression(QString::fromUtf8("é")));
    cut.feed("a\xc3");
    cut.feed("\xa9");
    EXPECT_TRUE(cut.reached());
}

TEST(LogFile, RotatesBySizeAndDayAtTheEndOfALine)
{
    const Sandbox sandbox;
    const QDateTime day(QDate(2026, 11, 25), QTime(23, 59));
    LogFile by_size(sandbox.path("%Y.log"), rotation_of("1k"));
    ASSERT_TRUE(by_size.open(day));
    const QByteArray most(1020, 'a');
    by_size.write(most, day);
    by_size.write("bbbb", day);
    EXPECT_EQ(file_content(sandbox.path("2026.log")), ""); // no line has ended
    by_size.write("\nnext", day);
    EXPECT_EQ(file_content(sandbox.path("2026.log.1")), most + "bbbb\n");
    by_size.flush();
    EXPECT_EQ(file_content(sandbox.path("2026.log")), "next");

    LogFile by_day(sandbox.path("%d.txt"), rotation_of("1d"));
    ASSERT_TRUE(by_day.open(day));
    by_day.write("old\n", day);
    by_day.write("last\n", day.addSecs(60));
    by_day.write("new\n", day.addSecs(61));
    EXPECT_EQ(file_content(sandbox.path("25.txt")), "old\nlast\n");
    EXPECT_EQ(file_content(sandbox.path("26.txt")), "new\n");

    LogFile endless(sandbox.path("endless"), {});
    ASSERT_TRUE(endless.open(day));
    endless.write(QByteArray(10000, 'a'), day);
    EXPECT_EQ(file_content(sandbox.path("endless")).size(), 10000);

    for (const char* wrong : {"", "M", "0M", "-1M", "10", "10x", "1.5M"})
        EXPECT_FALSE(rotation_of(wrong)) << wrong;
    LogFile nowhere(sandbox.path("none/x.log"), {});
    EXPECT_FALSE(nowhere.open(day));
    EXPECT_FALSE(nowhere.fault().isEmpty());
}
} // namespace
