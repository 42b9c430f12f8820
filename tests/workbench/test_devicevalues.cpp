#include "tools/cnetcfg.h"
#include "workbench/blockmodel.h"
#include "workbench/cnetwords.h"
#include "workbench/exchangerecord.h"
#include "workbench/heatmappainter.h"
#include "workbench/logmodel.h"

#include <QImage>
#include <QPainter>
#include <QPalette>
#include <gtest/gtest.h>
#include <print.h>
#include <set>

TEST(HeatMap, FillsAsTheSearchWalks)
{
    HeatMap map(0b11, 0b101); // channels 9 and 10, rates 0 and 2
    EXPECT_EQ(map.count_of(HeatState::Waiting), 4);
    EXPECT_EQ(map.count_of(HeatState::Outside), 62);
    map.enter(9, 0);
    EXPECT_EQ(map.state(9, 0), HeatState::Searching);
    map.found_add(9, 0);
    map.found_add(31, 0); // nowhere
    map.enter(10, 0);
    EXPECT_EQ(map.state(9, 0), HeatState::Searched);
    EXPECT_EQ(map.found(9, 0), 1);
    HeatMap broken_off = map;
    broken_off.end(false);
    EXPECT_EQ(broken_off.state(10, 0), HeatState::Waiting);
    map.found_add(10, 0);
    map.end(false); // somebody answered, so it counts
    EXPECT_EQ(map.state(10, 0), HeatState::Searched);
    EXPECT_EQ(map.count_of(HeatState::Searching), 0);
}

TEST(HeatMap, FindsEachPairAtItsPlace)
{
    for (const QSize area : {QSize(900, 120), QSize(480, 60), QSize(300, 2000)}) {
        const HeatGrid grid(area, QSize(60, 18));
        for (const CnetPair& pair : cnet_pairs(~0u, ~0u)) {
            CnetPair found;
            const QRect cell = grid.cell(pair.chan, pair.baud);
            ASSERT_TRUE(grid.pair_at(cell.center(), found));
            EXPECT_TRUE(found.chan == pair.chan && found.baud == pair.baud);
            EXPECT_TRUE(QRect(QPoint(), area).contains(cell));
            EXPECT_FALSE(cell.intersects(grid.rate_name(pair.baud)) ||
                         cell.intersects(grid.channel_name(pair.chan)));
        }
        CnetPair none;
        const QRect last = grid.cell(30, 2);
        for (const QPoint place :
             {QPoint(59, 5), QPoint(100, -1), last.bottomRight() + QPoint(0, 1),
              last.bottomRight() + QPoint(1, 0)})
            EXPECT_FALSE(grid.pair_at(place, none));
    }
}

TEST(HeatMap, EachStateAndCountHasAColourOfItsOwnOnBothGrounds)
{
    for (const QRgb ground : {0xFFFFFFFF, 0xFF202020}) {
        QPalette palette;
        palette.setColor(QPalette::Base, ground);
        HeatMap map(0x7F, 1);
        for (int channel = 9; channel < 14; ++channel) {
            map.enter(channel, 0);
            for (int found = 9; found < channel; ++found)
                map.found_add(channel, 0);
        }
        map.enter(14, 0);
        const HeatGrid grid(QSize(700, 100), QSize(40, 16));
        QImage image(700, 100, QImage::Format_RGB32);
        image.fill(ground);
        QPainter painter(&image);
        paint_heat_map(painter, grid, map, palette);
        std::set<QRgb> colours;
        for (int channel = 9; channel < 17; ++channel) { // nobody to 4, under way, waiting, outside
            const QRgb colour = image.pixel(grid.cell(channel, 0).topLeft() + QPoint(1, 1));
            colours.insert(colour);
            EXPECT_GT(std::abs(qGray(ink_on(colour).rgb()) - qGray(colour)), 100) << channel;
        }
        EXPECT_EQ(colours.size(), 8u);
        EXPECT_EQ(colours.count(ground), 0u);
    }
}

TEST(HeatMap, SaysWhatACellMeans)
{
    HeatMap map(0b1111, 0b10);
    map.enter(9, 1);
    map.found_add(9, 1);
    map.enter(10, 1);
    map.enter(11, 1);
    const struct
    {
        int channel, rate;
        const char* meaning;
    } rows[] = {{9, 1, "Channel 9, 500 kbps: one device answered."},
                {10, 1, "Channel 10, 500 kbps: nobody answered."},
                {11, 1, "Channel 11, 500 kbps: being searched."},
                {12, 1, "Channel 12, 500 kbps: not searched yet."},
                {12, 2, "Channel 12, 1 Mbps: not in this search."}};
    for (const auto& row : rows)
        EXPECT_EQ(HeatWords::meaning(map, row.channel, row.rate), row.meaning);
    map.found_add(9, 1);
    EXPECT_EQ(HeatWords::meaning(map, 9, 1), "Channel 9, 500 kbps: 2 devices answered.");
}

TEST(BlockModel, KeepsWhatWasTypedUntilItIsWrittenOrReverted)
{
    BlockModel model;
    model.held_set(QByteArray(CNET_BLOCK_SIZE, 'A'));
    ASSERT_EQ(model.rowCount(), CNET_BLOCK_WORDS);
    const auto type = [&](int word, const char* text) {
        model.setData(model.index(word, BlockModel::VALUE), text, Qt::EditRole);
    };
    type(1, "01020304");
    type(2, "01 02 03 0g");
    EXPECT_EQ(model.changed_words(), 2);
    EXPECT_EQ(model.problem(), "Word 2: not a hexadecimal digit.");
    model.held_set(QByteArray(CNET_BLOCK_SIZE, 'B'));
    EXPECT_EQ(model.block().mid(0, 8), QByteArray("BBBB\x01\x02\x03\x04", 8));
    EXPECT_EQ(model.index(2, BlockModel::VALUE).data(), "01 02 03 0g");
    EXPECT_EQ(model.index(2, BlockModel::HELD).data(), "42 42 42 42");
    type(2, "42424242");
    EXPECT_EQ(model.problem(), "");
    EXPECT_EQ(model.changed_words(), 1);
    model.held_set(model.block()); // as after writing
    EXPECT_EQ(model.changed_words(), 0);
    type(0, "00000000");
    model.changes_drop();
    EXPECT_EQ(model.block().mid(0, 8), QByteArray("BBBB\x01\x02\x03\x04", 8));
}

TEST(CnetWords, SayHowItEndedAndWhatToDo)
{
    const auto search = [](CnetOutcome outcome, LinkTrouble trouble, bool cnet, int found) {
        return CnetWords::search_end({cnet, outcome, {trouble, "/dev/x"}}, 66, found);
    };
    const auto block = [](BlockStep step, CnetOutcome outcome, LinkTrouble trouble) {
        return CnetWords::block_end({step, outcome, {trouble, "/dev/x"}, {}, {}}, "12 34", false);
    };
    using O = CnetOutcome;
    using T = LinkTrouble;
    using S = BlockStep;
    const struct
    {
        QString sentence;
        const char* part;
    } rows[] = {
        {search(O::Done, T::NoAnswer, true, 0), "Nobody answered on these 66 pairs"},
        {search(O::Done, T::NoAnswer, false, 0), "No module reported itself"},
        {search(O::LinkError, T::PortGone, true, 2), "The port /dev/x has gone"},
        {search(O::NoAnswer, T::NoAnswer, true, 2), "can't be tuned"},
        {search(O::Refused, T::NoAnswer, true, 2), "refuses a channel or rate"},
        {block(S::Read, O::NoAnswer, T::NoAnswer), "12 34 doesn't answer: check its address"},
        {block(S::Write, O::NoAnswer, T::NoAnswer), "12 34 doesn't confirm"},
        {block(S::Write, O::Refused, T::NoAnswer), "12 34 refuses this configuration"},
        {block(S::Tune, O::Refused, T::NoAnswer), "refuses this channel and rate"},
        {block(S::Tune, O::LinkError, T::ConnectionLost), "The connection to /dev/x is lost"},
        {block(S::Read, O::Aborted, T::NoAnswer), "was stopped"},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(row.sentence.contains(row.part)) << qPrintable(row.sentence);
}

TEST(ExchangeRecord, ShowsTheBeginningOfALongPartOnly)
{
    ExchangeRecord record;
    record.ending = ExchangeEnding::NoAnswer;
    record.request.payload = QByteArray(65536, 'x');
    record.wire = {{true, "abc\r\n", 0}};
    const QString text = record.details();
    EXPECT_TRUE(text.contains("... and 63488 bytes more"));
    EXPECT_TRUE(text.contains("61 62 63 0D 0A                                   abc..\n"));
    EXPECT_LT(text.size(), 10000);
}

TEST(LogModel, ShowsTheBeginningOfALongLineAndKeepsTheWhole)
{
    LogModel model;
    model.append({{0, "ttyUSB0", QString(200000, 'x') + "end"}, {0, "", "short"}});
    EXPECT_LT(model.index(0).data().toString().size(), LogModel::MOST_SHOWN + 10);
    EXPECT_TRUE(model.index(0).data(LogModel::WHOLE).toString().endsWith("xend"));
    EXPECT_EQ(model.index(1).data(), model.index(1).data(LogModel::WHOLE));
}
