// QFramerDorv: AT send commands with their replies, and report lines in every form.
#include "layers.h"
#include "memorylink.h"
#include "qframerdorv.h"
#include "qframernull.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

// Notes what the framer asks of the link for lines and of the framer below for bytes.
struct Module
{
    struct Lines : MemoryLink
    {
        std::vector<int> asked;
        int readline(char* buffer, int size) override
        {
            asked.push_back(size);
            return MemoryLink::readline(buffer, size);
        }
    };
    struct Bytes : QFramerNull
    {
        using QFramerNull::QFramerNull;
        std::vector<int> asked;
        int read(char* buffer, int nbytes) override
        {
            asked.push_back(nbytes);
            return QFramerNull::read(buffer, nbytes);
        }
    };

    Lines link;
    Bytes bytes{&link};
    QFramerDorv framer{&bytes};
    QSignalSpy log{&framer, &QFramer::log};

    Module()
    {
        framer.link_set(&link);
        framer.verbose_set(true);
    }
};

// Stand for a mode below.
constexpr int RAW = -1000;
constexpr int AS_MADE = -1001;

void set_form(QFramerDorv& framer, int mode)
{
    framer.raw_set(mode == RAW);
    if (mode != RAW && mode != AS_MADE)
        framer.mode_set(mode);
}

TEST(QFramerDorv, SendsTheCommandOfItsMode)
{
    const std::pair<int, QByteArray> rows[] = {
        {0, "at+mactx=2\r\1\2"},        {1, "at+pmactx=2\r\1\2"},    {2, "at+radiotx=2\r\1\2"},
        {7, "at+mac_send=2\r\1\2"},     {-1, "at+mac_send=2\r\1\2"}, {RAW, "at+radiotxraw=2\r\1\2"},
        {AS_MADE, "at+radiotx=2\r\1\2"}};
    for (const auto& [mode, block] : rows) {
        Module module;
        set_form(module.framer, mode);
        module.link.arrive("stale ok\r\n");
        module.link.reply("ok\r\n");
        EXPECT_EQ(send(module.framer, "\1\2"), 2);
        EXPECT_EQ(module.link.written, QByteArrayList{block});
        EXPECT_THAT(module.link.asked, ElementsAre(64));
        EXPECT_EQ(module.link.unread(), "");
        EXPECT_EQ(lines(module.log),
                  QStringList({"dorv_w: " + block.left(block.size() - 2) + " (01 02)",
                               "dorv_r: (ok\r\n)"}));
    }
}

TEST(QFramerDorv, IsSentOnlyWhenTheModuleSaysOk)
{
    const QByteArray lengthy = "long " + QByteArray(70, '.') + "ok\r\n";
    const struct
    {
        QByteArray reply;
        int result;
        QByteArray unread;
        int lines; // in the log, the command's included
    } rows[] = {
        {"ok\r\n", 3, "", 2},
        {"ok", 3, "", 2}, // without a line's end
        {"+radiotx: ok, queued\r\nnext", 3, "next", 2},
        {"OK\r\n", 0, "", 2},
        {"error\r\n", 0, "", 2},
        {"\n", 0, "", 1},
        {"", 0, "", 1},
        {lengthy, 0, lengthy.mid(63), 2}, // cut before its "ok"
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reply.toStdString());
        Module module;
        module.link.reply(row.reply);
        EXPECT_EQ(send(module.framer, "abc"), row.result);
        EXPECT_EQ(module.link.unread(), row.unread);
        EXPECT_EQ(lines(module.log).size(), row.lines);
    }
}

TEST(QFramerDorv, ReadsReportsAndAsksForNoMoreThanItMay)
{
    const struct
    {
        int mode;
        QByteArray came;
        int nbytes;
        QByteArray payload;
        std::vector<int> asked; // of the framer below
        QByteArray unread;
        QString second_line; // of the log
    } rows[] = {
        {0, "+macrx=2\r\nAB", 8, "AB", {2}, "", {}},
        {1, "+pmacrx:2\r\nAB", 8, "AB", {2}, "", {}},
        {2, "+radiorx=5\r\nHELLO", 3, "HEL", {3}, "LO", {}},
        {7, "+data 12\r\nHELLO, WORLD", 12, "HELLO, WORLD", {12}, "", {}},
        {2, "noise +radiorx= 2, more\nAB", 2, "AB", {2}, "", {}},
        {2, "+radiorx=5\r\nHE", 8, "HE", {5}, "", {}},
        {2, "+radiorx=5\r\n", 8, "", {5}, "", {}},
        {2, "+radiorx=99999999999999\nABCDE", 4, "ABCD", {4}, "E", {}},
        {2, "+radiorx=2\nAB", 0, "", {}, "AB", {}},
        {2, "+radiorx=0\nAB", 4, "", {}, "AB", {}},
        {2, "+radiorx=-2\nAB", 4, "", {}, "AB", {}},
        {2, "+radiorx=-99999999999999\nAB", 4, "", {}, "AB", {}},
        {2, "+radiorx=x\nAB", 4, "", {}, "AB", {}},
        {2, "+radiorx\nAB", 4, "", {}, "AB", {}},
        {2, "+radiorx", 4, "", {}, "", {}},
        {2, "+macrx=2\r\nAB", 4, "", {}, "AB", {}},
        {2, "", 4, "", {}, "", {}},
        {RAW, "+radiorx=-70,9,414243\r\nXY", 8, "ABC", {}, "XY", {}},
        {RAW, "+radiorx=-70,9,414243\r\n", 2, "AB", {}, "", {}},
        {RAW, "+radiorx=,,41 4243\r\n", 8, "ABC", {}, "", {}},
        {RAW, "+radiorx=-70,9,12345\r\n", 8, "012345"_hex, {}, "", {}},
        {RAW, "+radiorx=-70,9,\r\n", 8, "", {}, "", {}},
        {RAW, "+macrx=-70,9,41\r\n", 8, "", {}, "", "dorv_r: cmd not match"},
        {RAW, "+radiorx=-70\r\n", 8, "", {}, "", "dorv_r: no rssi find"},
        {RAW, "+radiorx,9\r\n", 8, "", {}, "", "dorv_r: no rssi find"}, // that's the separator
        {RAW, "+radiorx", 8, "", {}, "", "dorv_r: no rssi find"},
        {RAW, "+radiorx=-70,9\r\n", 8, "", {}, "", "dorv_r: no snr find"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.toStdString());
        Module module;
        module.framer.mode_set(7); // which raw mode doesn't heed
        set_form(module.framer, row.mode);
        module.link.arrive(row.came);
        const Received got = receive(module.framer, row.nbytes);
        EXPECT_EQ(got.result, row.payload.size());
        EXPECT_EQ(got.bytes, row.payload);
        EXPECT_EQ(module.bytes.asked, row.asked);
        EXPECT_THAT(module.link.asked, ElementsAre(row.nbytes + 64));
        EXPECT_EQ(module.link.unread(), row.unread);
        QStringList log;
        if (!row.came.isEmpty())
            log += "dorv_r: " + row.came.left((row.came + '\n').indexOf('\n') + 1);
        if (!row.second_line.isEmpty())
            log += row.second_line;
        EXPECT_EQ(lines(module.log), log);
    }
}

TEST(QFramerDorv, ReadsReportsOfText)
{
    const struct
    {
        QByteArray came;
        QByteArray stored;
        int result;
    } rows[] = {
        {"+radiorx=1,2,hello\r\n", "hel", 5}, // the length tells that more was there
        {"+radiorx=1,2,hi\r\n", "hi", 2},
        {"+radiorx=1,2,\r\n", "", 0},
        {"+radiorx=1,2\r\n", "", 0},
        {"+macrx=1,2,hello\r\n", "", 0},
        {"", "", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.toStdString());
        Module module;
        module.link.arrive(row.came);
        const Received got =
            receive_by([&](char* buffer,
                           int size) { return module.framer.text_read("+radiorx", buffer, size); },
                       3);
        EXPECT_EQ(got.result, row.result);
        EXPECT_EQ(got.bytes, row.stored);
        EXPECT_EQ(lines(module.log).size(), row.came.isEmpty() ? 0 : 1);
    }
}

TEST(QFramerDorv, GivesNothingWhenALayerIsMissingOrCutsShort)
{
    Module module;
    module.link.write_limit = 5;
    module.link.reply("ok\n");
    EXPECT_EQ(send(module.framer, "abc"), 0);
    EXPECT_EQ(module.link.unread(), "ok\n");
    EXPECT_EQ(module.framer.write(nullptr, -1), 0);

    module.framer.link_set(nullptr);
    module.link.write_limit = 100;
    EXPECT_EQ(send(module.framer, "abc"), 0);
    EXPECT_EQ(receive(module.framer, 8).result, 0);

    module.framer.link_set(&module.link);
    module.framer.framer_set(nullptr);
    module.framer.flush();
    lines(module.log);
    EXPECT_EQ(send(module.framer, "abc"), 0);
    EXPECT_EQ(lines(module.log), QStringList("dorv_w: at+radiotx=3\r (61 62 63)"));
    module.link.arrive("+radiorx=2\nAB");
    EXPECT_EQ(receive(module.framer, 8).result, 0);

    lines(module.log);
    module.framer.verbose_set(false);
    EXPECT_EQ(send(module.framer, "abc"), 0);
    EXPECT_EQ(lines(module.log), QStringList());
}

} // namespace
