// What is left of a file that is damaged, and that the damage is found.
#include "capture/capturesurvey.h"
#include "captures.h"
#include "print.h"

#include <QBuffer>
#include <QSet>
#include <algorithm>
#include <gmock/gmock.h>

namespace {

const QList<QByteArray> BLOCKS = known_blocks(PcapngOrder::Little);

int offset_of_block(int index)
{
    return int(QList<QByteArray>(BLOCKS.mid(0, index)).join().size());
}

// The bytes of the known file in which a flipped bit may go unseen. The table of what isn't guarded
// is in capturereader.h.
QSet<int> unguarded_bytes()
{
    struct
    {
        int block;
        int from; // in the block
        int count;
    } const rows[] = {
        {0, 24, 48},                                      // options of the section
        {1, 20, 7},  {1, 32, 10}, {1, 48, 8},             // name, settings, rate
        {2, 16, 2},  {3, 16, 2},  {4, 16, 2}, {5, 16, 2}, // below a microsecond
        {2, 40, 29},                                      // options of the first record
        {5, 24, 4},  {5, 44, 1},                          // bytes lost, their direction
    };
    QSet<int> bytes;
    for (const auto& row : rows)
        for (int i = 0; i < row.count; ++i)
            bytes += offset_of_block(row.block) + row.from + i;
    return bytes;
}

TEST(CaptureReader, FindsEachFlippedBitAndReadsOn)
{
    const QStringList good = read_lines(known_file());
    const QSet<int> unguarded = unguarded_bytes();
    for (int bit = 0; bit < known_file().size() * 8; ++bit) {
        QByteArray file = known_file();
        file[bit / 8] = char(file[bit / 8] ^ 1 << bit % 8);
        const QStringList lines = read_lines(file);
        const bool found = lines.filter("damage").size() + lines.filter("torn").size() > 0;
        ASSERT_TRUE(found || unguarded.contains(bit / 8)) << bit;
        const auto kept = [&](const QString& line) { return lines.contains(line); };
        ASSERT_GE(std::count_if(good.begin(), good.end(), kept), good.size() - 2) << bit;
    }
}

TEST(CaptureReader, ReadsUpToATornEnd)
{
    const QStringList good = read_lines(known_file());
    for (int block = 0; block < BLOCKS.size(); ++block) {
        const int begin = offset_of_block(block);
        for (int size = begin; size < offset_of_block(block + 1); ++size) {
            QStringList expected = good.mid(0, block);
            if (size > begin)
                expected += QStringLiteral("torn %1+%2").arg(begin).arg(size - begin);
            ASSERT_EQ(read_lines(known_file().left(size)), expected) << size;
        }
    }
}

// The last bytes of it can't be read.
class BadDisk : public QBuffer
{
    qint64 readData(char* bytes, qint64 most) override
    {
        const qint64 readable = size() - 30 - pos();
        return readable > 0 ? QBuffer::readData(bytes, std::min(most, readable)) : -1;
    }
};

TEST(CaptureReader, TakesNoEndThatCantBeReadForATornOne)
{
    BadDisk disk;
    disk.setData(known_file());
    ASSERT_TRUE(disk.open(QIODevice::ReadOnly));
    const CaptureSurvey survey = CaptureSurvey::of(disk);
    EXPECT_FALSE(survey.torn_end);
    ASSERT_EQ(survey.damages.size(), 1);
    EXPECT_EQ(survey.damages[0].offset, offset_of_block(int(BLOCKS.size()) - 1));
}

TEST(CaptureReader, FindsTheNextGoodBlock)
{
    const QByteArray junk("\x06\0\0\0\x40\0\0\0junk\x0A\x0D\x0D", 15);
    const QByteArray other = PcapngBlock{5, PcapngOrder::Little, "statistics"}.build();
    PcapngInterface ethernet;
    ethernet.link_type = 1;
    const QByteArray foreign =
        PcapngSection().build() + ethernet.build() + other + BLOCKS[3] + BLOCKS[1];
    auto packet =
        *PcapngPacket::parse(*PcapngBlock::parse(BLOCKS[2], PcapngOrder::Little).value).value;
    packet.hashed = false;
    const QByteArray rewritten = BLOCKS[0] + BLOCKS[1] + packet.build() + other;
    const QStringList good = read_lines(known_file());
    const QStringList records = good.mid(2);
    struct
    {
        const char* what;
        QByteArray file;
        QStringList lines;
    } const rows[] = {
        {"nothing at all", {}, {}},
        {"no capture", junk, {"torn 0+15"}},
        {"bytes between blocks", BLOCKS[0] + BLOCKS[1] + BLOCKS[2] + junk + BLOCKS[3],
         good.mid(0, 3) + QStringList{"damage 228+15", good[3]}},
        {"a block without its start", BLOCKS[0] + BLOCKS[1] + BLOCKS[2].mid(21) + BLOCKS[3],
         good.mid(0, 2) + QStringList{"damage 148+59", good[3]}},
        {"zeros of a disk that lost power", known_file() + QByteArray(5000, '\0'),
         good + QStringList("torn 440+5000")},
        {"no header", known_file().mid(BLOCKS[0].size()), QStringList("damage 0+72") + records},
        {"a second section in the other byte order", known_file() + known_file(PcapngOrder::Big),
         good + good},
        {"a torn section and another", known_file().left(430) + known_file(PcapngOrder::Big),
         good.mid(0, 5) + QStringList("damage 372+58") + good},
        {"blocks and link types of others", foreign, {"section ", "port ", "port ttyUSB0"}},
        {"hashes left out by a program that rewrites", rewritten, good.mid(0, 3)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read_lines(row.file), row.lines) << row.what;
}

} // namespace
