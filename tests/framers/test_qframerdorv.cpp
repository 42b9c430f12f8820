// QFramerDorv: AT send commands with their replies, and report lines in every form.
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "layers.h"
#include "memorylink.h"

#include <gtest/gtest.h>

namespace {

// Stand for a mode below.
constexpr int RAW = -1000;
constexpr int AS_MADE = -1001;

struct Module
{
    MemoryLink link;
    QFramerNull bytes{&link};
    QFramerDorv framer{&bytes};
    QSignalSpy log{&framer, &QFramer::log};

    explicit Module(int mode = AS_MADE)
    {
        framer.link_set(&link);
        framer.verbose_set(true);
        framer.raw_set(mode == RAW);
        if (mode != AS_MADE)
            framer.mode_set(mode == RAW ? 7 : mode); // which raw mode doesn't heed
    }
};

TEST(QFramerDorv, SendsTheCommandOfItsMode)
{
    const std::pair<int, QByteArray> rows[] = {
        {0, "at+mactx=2\r"},    {1, "at+pmactx=2\r"},       {2, "at+radiotx=2\r"},
        {7, "at+mac_send=2\r"}, {RAW, "at+radiotxraw=2\r"}, {AS_MADE, "at+radiotx=2\r"}};
    for (const auto& [mode, command] : rows) {
        Module module(mode);
        module.link.arrive("stale ok\r\n");
        module.link.reply("ok\r\n");
        EXPECT_EQ(send(module.framer, "\1\2"), 2);
        EXPECT_EQ(module.link.written, QByteArrayList{command + "\1\2"});
        EXPECT_EQ(module.link.unread(), "");
        EXPECT_EQ(lines(module.log),
                  QStringList({"dorv_w: " + command + " (01 02)", "dorv_r: (ok\r\n)"}));
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
    } rows[] = {
        {"ok", 3, ""}, // without a line's end
        {"+radiotx: ok, queued\r\nnext", 3, "next"},
        {"OK\r\n", 0, ""},
        {"\n", 0, ""},
        {"", 0, ""},
        {lengthy, 0, lengthy.mid(63)}, // cut before its "ok"
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reply.toStdString());
        Module module;
        module.link.reply(row.reply);
        EXPECT_EQ(send(module.framer, "abc"), row.result);
        EXPECT_EQ(module.link.unread(), row.unread);
        EXPECT_EQ(lines(module.log).size(), row.reply.size() > 1 ? 2 : 1);
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
        QByteArray unread;
        QString second_line; // of the log
    } rows[] = {
        {0, "+macrx=2\r\nAB", 8, "AB", "", {}},
        {1, "+pmacrx:2\r\nAB", 8, "AB", "", {}},
        {2, "+radiorx=5\r\nHELLO", 3, "HEL", "LO", {}},
        {7, "+data 12\r\nHELLO, WORLD", 12, "HELLO, WORLD", "", {}},
        {2, "noise +radiorx= 2, more\nAB", 2, "AB", "", {}},
        {2, "+radiorx=5\r\nHE", 8, "HE", "", {}},
        {2, "+radiorx=99999999999999\nABCDE", 4, "ABCD", "E", {}},
        {2, "+radiorx=-2\nAB", 4, "", "AB", {}},
        {2, "+radiorx=-99999999999999\nAB", 4, "", "AB", {}},
        {2, "+radiorx=x\nAB", 4, "", "AB", {}},
        {2, "+radiorx", 4, "", "", {}},
        {2, "+macrx=2\r\nAB", 4, "", "AB", {}},
        {2, "", 4, "", "", {}},
        {RAW, "+radiorx=-70,9,414243\r\nXY", 8, "ABC", "XY", {}},
        {RAW, "+radiorx=-70,9,414243\r\n", 2, "AB", "", {}},
        {RAW, "+radiorx=,,41 4243\r\n", 8, "ABC", "", {}},
        {RAW, "+radiorx=-70,9,12345\r\n", 8, "012345"_hex, "", {}},
        {RAW, "+macrx=-70,9,41\r\n", 8, "", "", "dorv_r: cmd not match"},
        {RAW, "+radiorx,9\r\n", 8, "", "", "dorv_r: no rssi find"}, // that's the separator
        {RAW, "+radiorx", 8, "", "", "dorv_r: no rssi find"},
        {RAW, "+radiorx=-70,9\r\n", 8, "", "", "dorv_r: no snr find"},
        {RAW, QByteArray(80, '.'), 8, "", QByteArray(9, '.'), "dorv_r: cmd not match"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.toStdString());
        Module module(row.mode);
        module.link.arrive(row.came);
        const Received got = receive(module.framer, row.nbytes);
        EXPECT_EQ(got.result, row.payload.size());
        EXPECT_EQ(got.bytes, row.payload);
        EXPECT_EQ(module.link.unread(), row.unread);
        const QStringList log = lines(module.log);
        EXPECT_EQ(log.value(0).isEmpty(), row.came.isEmpty());
        EXPECT_TRUE(("dorv_r: " + row.came).startsWith(log.value(0).toLatin1()));
        EXPECT_EQ(log.value(1), row.second_line);
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
        {"+radiorx=1,2,hello\r\n", "hel", 5}, // the length says that more was there
        {"+radiorx=1,2,hi\r\n", "hi^", 2},    {"+radiorx=1,2,\r\n", "^^^", 0},
        {"+radiorx=1,2\r\n", "^^^", 0},       {"+macrx=1,2,hello\r\n", "^^^", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.toStdString());
        Module module;
        module.link.arrive(row.came);
        QByteArray buffer(3, '^');
        EXPECT_EQ(module.framer.text_read("+radiorx", buffer.data(), 3), row.result);
        EXPECT_EQ(buffer, row.stored);
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
    module.link.arrive("+radiorx=2\nAB");
    EXPECT_EQ(receive(module.framer, 8).result, 0);
    lines(module.log);
    module.framer.verbose_set(false);
    EXPECT_EQ(send(module.framer, "abc"), 0);
    EXPECT_EQ(lines(module.log), QStringList());
}

} // namespace
