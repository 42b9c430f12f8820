// Every framer over a missing layer, over a closed link, and over a link that fails at each of its
// calls in turn: no false success, and the documented code.
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "layers.h"
#include "memorylink.h"

#include <QScopedValueRollback>
#include <gmock/gmock.h>

namespace {

const QByteArray PAYLOAD = "0102"_hex;
constexpr int LINK_ERROR = -77; // no code of any layer
constexpr int NEVER = 0;

// The call with number `at`, and with `for_good` those after it, don't reach the memory.
class FaultyLink : public MemoryLink
{
public:
    int at = NEVER;
    bool for_good = false;
    int calls = 0;

    bool failed() const { return at != NEVER && calls >= at; }

    bool is_open() override { return !breaks() && MemoryLink::is_open(); }
    int read(char* buffer, int nbytes) override
    {
        return breaks() ? LINK_ERROR : MemoryLink::read(buffer, nbytes);
    }
    int write(const char* buffer, int nbytes) override
    {
        return breaks() ? LINK_ERROR : MemoryLink::write(buffer, nbytes);
    }
    int readline(char* buffer, int size) override
    {
        buffer[0] = '\0';
        const bool broken = breaks();
        const QScopedValueRollback<bool> one_call(inside, true);
        return broken ? LINK_ERROR : MemoryLink::readline(buffer, size);
    }

private:
    bool breaks()
    {
        calls += !inside;
        return !inside && (calls == at || (for_good && failed()));
    }

    bool inside = false;
};

// All seven on one link, each but the last over `bytes`.
struct Stack
{
    FaultyLink link;
    QFramerNull bytes{&link};
    Framers framers{&bytes};
    QFramerDorv dorv{&bytes};
    QFramer* const all[7] = {&framers.crc16, &framers.rtu, &framers.chan, &framers.cnet,
                             &framers.rwlt,  &bytes,       &dorv};

    Stack() { dorv.link_set(&link); }
};

struct Row
{
    const char* name;
    // What write gives when all is well, what the device then says, and what it says of its own.
    int written;
    QByteArray response;
    QByteArray frame;
    // Results of write and read without a layer below and over a closed link.
    int write_alone, read_alone, write_closed, read_closed;
    // What a failing call of the link may come to.
    std::vector<int> write_faults, read_faults;
};

const std::vector<int> CODES = {LINK_ERROR, FRAMER_CLOSED};
const Row ROWS[] = {
    {"crc16", 4, "", "010281E1"_hex, -19, -19, -1, -1, CODES, CODES},
    {"rtu", 5, "", "010102A051"_hex, -19, -19, -1, -1, CODES, CODES},
    {"chan", 4, "", "12340102"_hex, -19, -5, -1, -5, CODES, {-5}},
    {"cnet", 2, "AA010055"_hex, "AA05D11234010255"_hex, -19, 0, -1, 0, {LINK_ERROR, -1, 0}, {0}},
    {"rwlt", 2, "", "AB0102BA"_hex, 2, 0, 2, 0, {2}, {0}},
    {"null", 2, "", PAYLOAD, -19, -19, -1, -1, CODES, CODES},
    {"dorv", 2, "ok\r\n", "+radiorx=2\r\n\1\2", 0, 0, 0, 0, {0}, {0}},
};

class EachFramer : public testing::TestWithParam<int>
{
protected:
    const int which = GetParam();
    const Row& row = ROWS[which];
};

TEST_P(EachFramer, WorksOnAGoodLinkAndGivesItsCodesOnNone)
{
    Stack stack;
    QFramer& framer = *stack.all[which];
    stack.link.reply(row.response);
    EXPECT_EQ(send(framer, PAYLOAD), row.written);
    stack.link.arrive(row.frame);
    EXPECT_EQ(receive(framer, 2).bytes, PAYLOAD);
    stack.link.arrive("stale");
    framer.flush();
    EXPECT_EQ(stack.link.unread(), "");

    stack.link.close();
    framer.flush();
    EXPECT_EQ(send(framer, PAYLOAD), row.write_closed);
    EXPECT_EQ(receive(framer, 2).result, row.read_closed);

    for (QFramer* each : stack.framers.all)
        each->lower_set(nullptr);
    stack.dorv.framer_set(nullptr);
    stack.bytes.link_set(nullptr);
    framer.flush();
    EXPECT_EQ(send(framer, PAYLOAD), row.write_alone);
    EXPECT_EQ(receive(framer, 2).result, row.read_alone);
}

TEST_P(EachFramer, SurvivesALinkThatFailsAtAnyCall)
{
    for (const bool for_good : {false, true}) {
        bool failed = true;
        for (int at = 1; failed; ++at) {
            Stack stack;
            stack.link.at = at;
            stack.link.for_good = for_good;
            stack.link.reply(row.response);
            const int written = send(*stack.all[which], PAYLOAD);
            if (!stack.link.failed() || written > 0)
                EXPECT_EQ(written, row.written);
            else
                EXPECT_THAT(row.write_faults, testing::Contains(written));
            stack.link.flush();
            stack.link.arrive(row.frame);
            const Received got = receive(*stack.all[which], 2);
            failed = stack.link.failed();
            if (!failed || got.result > 0)
                EXPECT_EQ(got.bytes, PAYLOAD);
            else
                EXPECT_THAT(row.read_faults, testing::Contains(got.result));
        }
    }
}

// Stores what it is asked for, but reports more.
class BoastfulFramer : public QFramerNull
{
public:
    using QFramerNull::QFramerNull;
    int read(char* buffer, int nbytes) override
    {
        const int count = QFramerNull::read(buffer, nbytes);
        return count > 0 ? count + 100000 : count;
    }
};

TEST_P(EachFramer, ReadsNothingAfterItsBufferThoughTheLayerBelowReportsMore)
{
    for (const int nbytes : {2, 70000}) { // a frame on the stack, and one on the heap
        Stack stack;
        BoastfulFramer below(&stack.link);
        for (QFramer* each : stack.framers.all)
            each->lower_set(&below);
        stack.dorv.framer_set(&below);
        stack.link.arrive(row.frame + QByteArray(nbytes, 'x'));
        EXPECT_LE(receive(*stack.all[which], nbytes).result, nbytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Framers, EachFramer, testing::Range(0, int(std::size(ROWS))),
                         [](const auto& info) { return std::string(ROWS[info.param].name); });

} // namespace
