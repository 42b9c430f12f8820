// QFramerRwlt: marker bytes around the payload.
#include "layers.h"
#include "memorylink.h"
#include "qframernull.h"
#include "qframerrwlt.h"

#include <gtest/gtest.h>

namespace {

TEST(QFramerRwlt, SendsBetweenItsMarkersAndNeverFails)
{
    NotingFramer below;
    QFramerRwlt framer(&below);
    EXPECT_EQ(send(framer, "0102"_hex), 2);
    EXPECT_EQ(below.calls, QStringList({"flush", "write ab 01 02 ba"}));
    below.write_error = -6;
    EXPECT_EQ(send(framer, "0102"_hex), 2);

    MemoryLink closed;
    closed.close();
    QFramerNull bytes(&closed);
    framer.lower_set(&bytes);
    EXPECT_EQ(send(framer, "0102"_hex), 2);
    framer.lower_set(nullptr);
    EXPECT_EQ(send(framer, "0102"_hex), 2);
    EXPECT_EQ(framer.write(nullptr, -1), -1);
}

TEST(QFramerRwlt, TakesWhatStandsBetweenItsMarkers)
{
    const QString failed = "rwlt: read frame failed or time out, nbytes=%1";
    const QString invalid = "rwlt: not a valid data frame, nbytes=%1";
    const struct
    {
        NotingFramer::Answer came;
        QByteArray payload;
        QString log;
    } rows[] = {
        {{"AB00BA"_hex}, QByteArray(1, '\0'), {}},
        {{"AB55AAABBABA"_hex}, "55AAABBA"_hex, {}}, // markers inside are payload
        {{"ABBA"_hex}, "", failed.arg(2)},
        {{}, "", failed.arg(0)},
        {{{}, -6}, "", failed.arg(-6)},
        {{"AA00BA"_hex}, "", invalid.arg(3)},
        {{"AB00BB00"_hex}, "", invalid.arg(4)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.bytes.toHex(' ').toStdString());
        NotingFramer below;
        QFramerRwlt framer(&below);
        QSignalSpy log(&framer, &QFramer::log);
        below.answers = {row.came};
        const Received got = receive(framer, 16);
        EXPECT_EQ(got.result, row.payload.size());
        EXPECT_EQ(got.bytes, row.payload);
        EXPECT_EQ(got.touched, !row.payload.isEmpty());
        EXPECT_EQ(lines(log).join('\n'), row.log);
        EXPECT_EQ(below.calls, QStringList("read 18"));
    }
}

} // namespace
