// Every framer over a missing layer, over a closed link, and over a link that fails at each of its
// calls in turn: no false success, and the documented code.
#include "faultylink.h"
#include "layers.h"
#include "memorylink.h"
#include "qframerchan.h"
#include "qframercnet.h"
#include "qframercrc16.h"
#include "qframerdorv.h"
#include "qframernull.h"
#include "qframerrtu.h"
#include "qframerrwlt.h"

#include <gmock/gmock.h>

namespace {

const QByteArray PAYLOAD = "0102"_hex;

// All seven on one link, each but the last over `bytes`.
struct Stacks
{
    QFramerNull bytes;
    QFramerCrc16 crc16{&bytes};
    QFramerRtu rtu{&bytes};
    QFramerChan chan{&bytes};
    QFramerCnet cnet{&bytes};
    QFramerRwlt rwlt{&bytes};
    QFramerDorv dorv{&bytes};

    explicit Stacks(QLink* link)
        : bytes(link)
    {
        rtu.slave_set(1);
        chan.chan_set(std::uint8_t(7));
        cnet.target_set(std::uint16_t(0x1234));
        dorv.link_set(link);
    }
};

struct Row
{
    const char* name;
    QFramer& (*framer)(Stacks&);
    // What write gives when all is well, what the device then says, and what it says of its own.
    int written;
    QByteArray response;
    QByteArray frame;
    // Results of write and read without a layer below and over a closed link.
    int write_alone, read_alone, write_closed, read_closed;
    // What a failing call of the link may come to. LINK_ERROR stands for that call's own error.
    std::vector<int> write_faults, read_faults;
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.name;
}

constexpr int LINK_ERROR = -77; // no code of any layer

const std::vector<Row> ROWS = {
    {"null",
     [](Stacks& s) -> QFramer& { return s.bytes; },
     2,
     "",
     "0102"_hex,
     -19,
     -19,
     -1,
     -1,
     {LINK_ERROR, FRAMER_CLOSED},
     {LINK_ERROR, FRAMER_CLOSED}},
    {"crc16",
     [](Stacks& s) -> QFramer& { return s.crc16; },
     4,
     "",
     "010281E1"_hex,
     -19,
     -19,
     -1,
     -1,
     {LINK_ERROR, FRAMER_CLOSED},
     {LINK_ERROR, FRAMER_CLOSED}},
    {"rtu",
     [](Stacks& s) -> QFramer& { return s.rtu; },
     5,
     "",
     "010102A051"_hex,
     -19,
     -19,
     -1,
     -1,
     {LINK_ERROR, FRAMER_CLOSED},
     {LINK_ERROR, FRAMER_CLOSED}},
    {"chan",
     [](Stacks& s) -> QFramer& { return s.chan; },
     3,
     "",
     "070102"_hex,
     -19,
     -5,
     -1,
     -5,
     {LINK_ERROR, FRAMER_CLOSED},
     {FRAMER_BAD_FRAME}},
    {"cnet",
     [](Stacks& s) -> QFramer& { return s.cnet; },
     2,
     "AA010055"_hex,
     "AA05D11234010255"_hex,
     -19,
     0,
     -1,
     0,
     {LINK_ERROR, FRAMER_CLOSED, 0},
     {0}},
    {"rwlt",
     [](Stacks& s) -> QFramer& { return s.rwlt; },
     2,
     "",
     "AB0102BA"_hex,
     2,
     0,
     2,
     0,
     {2},
     {0}},
    {"dorv",
     [](Stacks& s) -> QFramer& { return s.dorv; },
     2,
     "ok\r\n",
     "+radiorx=2\r\n\1\2",
     0,
     0,
     0,
     0,
     {0},
     {0}},
};

class EachFramer : public testing::TestWithParam<Row>
{
};

TEST_P(EachFramer, WorksOnAGoodLinkAndGivesItsCodesOnNone)
{
    const Row& row = GetParam();
    MemoryLink link;
    Stacks stacks(&link);
    QFramer& framer = row.framer(stacks);
    link.reply(row.response);
    EXPECT_EQ(send(framer, PAYLOAD), row.written);
    link.arrive(row.frame);
    EXPECT_EQ(receive(framer, 2).bytes, PAYLOAD);
    link.arrive("stale");
    framer.flush();
    EXPECT_EQ(link.unread(), "");

    link.close();
    framer.flush();
    EXPECT_EQ(send(framer, PAYLOAD), row.write_closed);
    EXPECT_EQ(receive(framer, 2).result, row.read_closed);

    for (QFramer* each : std::initializer_list<QFramer*>{&stacks.crc16, &stacks.rtu, &stacks.chan,
                                                         &stacks.cnet, &stacks.rwlt})
        each->lower_set(nullptr);
    stacks.dorv.framer_set(nullptr);
    stacks.bytes.link_set(nullptr);
    framer.flush();
    EXPECT_EQ(send(framer, PAYLOAD), row.write_alone);
    EXPECT_EQ(receive(framer, 2).result, row.read_alone);
}

TEST_P(EachFramer, SurvivesALinkThatFailsAtAnyCall)
{
    const Row& row = GetParam();
    for (const auto aftermath : {FaultyLink::RECOVERS, FaultyLink::STAYS_BROKEN}) {
        for (int at = 1;; ++at) {
            MemoryLink memory;
            FaultyLink link(memory, at, LINK_ERROR, aftermath);
            Stacks stacks(&link);
            QFramer& framer = row.framer(stacks);
            memory.reply(row.response);
            const int written = send(framer, PAYLOAD);
            const bool write_failed = link.failed();
            if (!write_failed || written > 0) {
                EXPECT_EQ(written, row.written);
                // A send that can't fail to its caller aside, success means that it went out.
                EXPECT_TRUE(write_failed || memory.written.size() == 1);
            } else {
                EXPECT_THAT(row.write_faults, testing::Contains(written));
            }
            memory.flush();
            memory.arrive(row.frame);
            const Received got = receive(framer, 2);
            if (!link.failed() || got.result > 0)
                EXPECT_EQ(got.bytes, PAYLOAD);
            else
                EXPECT_THAT(row.read_faults, testing::Contains(got.result));
            if (!link.failed())
                break;
        }
    }
}

// Stores what it is asked for, but tells of more.
class BoastfulLink : public MemoryLink
{
public:
    int read(char* buffer, int nbytes) override
    {
        const int count = MemoryLink::read(buffer, nbytes);
        return count > 0 ? count + 100000 : count;
    }
};

TEST_P(EachFramer, ReadsNothingBehindItsBufferThoughTheLayerBelowTellsOfMore)
{
    const Row& row = GetParam();
    BoastfulLink link;
    Stacks stacks(&link);
    for (const int nbytes : {2, 2000}) { // a frame on the stack, and one on the heap
        link.flush();
        link.arrive(row.frame + QByteArray(nbytes, 'x'));
        std::vector<char> buffer(std::size_t(nbytes), '\0');
        const int result = row.framer(stacks).read(buffer.data(), nbytes);
        EXPECT_TRUE(result <= nbytes || &row.framer(stacks) == &stacks.bytes) << result;
    }
}

INSTANTIATE_TEST_SUITE_P(Framers, EachFramer, testing::ValuesIn(ROWS),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
