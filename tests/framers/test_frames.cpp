// Every framer: its known bytes, its room, and layers below that are missing, fail or lie.
#include "framers/framebuffer.h"
#include "framerstack.h"

namespace {

int frames_on_heap = 0;

constexpr int BELOW = INT_MIN; // whatever the layer below gives

struct Row
{
    const char* name;
    // What goes to the link, and what the device replies to that.
    QByteArray payload, sent, reply;
    QByteArray came;  // the device's own frame with this payload, when it is another one
    bool drops_stale; // before it sends
    // Result of write, and of both over a layer that fails.
    int written, write_fails, read_fails;
};

const Row ROWS[] = {
    {"crc16", "123456789", "313233343536373839374B"_hex, "", {}, false, 11, BELOW, BELOW},
    // A request of the Modbus protocol.
    {"rtu", "0300000001"_hex, "010300000001840A"_hex, "", {}, false, 8, BELOW, BELOW},
    {"chan", "A", "123441"_hex, "", {}, false, 3, BELOW, FRAMER_BAD_FRAME},
    // With markers inside, which are payload.
    {"cnet", "55AA"_hex, "AA05D1123455AA55"_hex, "AA010055"_hex, {}, true, 2, BELOW, 0},
    {"rwlt", "ABBA"_hex, "ABABBABA"_hex, "", {}, true, 2, 2, 0},
    {"null", "12", "12", "", {}, false, 2, BELOW, BELOW},
    {"dorv", "12", "at+radiotx=2\r12", "ok\r\n", "+radiorx=2\r\n12", true, 2, 0, 0},
};

struct EachFramer : testing::TestWithParam<int>
{
    static int code(int result, int below) { return result == BELOW ? below : result; }

    const Row& row = ROWS[GetParam()];
    const QByteArray came = row.came.isEmpty() ? row.sent : row.came;
    Stack stack{Kind(GetParam())};
};

TEST_P(EachFramer, SendsAndTakesItsKnownBytes)
{
    stack.link.arrive("stale");
    stack.link.reply(row.reply);
    EXPECT_EQ(send(stack.top, row.payload), row.written);
    EXPECT_EQ(stack.link.written, QByteArrayList{row.sent});
    EXPECT_EQ(stack.link.unread(), row.drops_stale ? "" : "stale");
    stack.top.flush();
    EXPECT_EQ(stack.link.unread(), "");
    stack.link.arrive(came + "more");
    stack.link.boast = 100000; // nobody relies on what a layer reports
    EXPECT_EQ(receive(stack.top, row.payload.size()).bytes, row.payload);
    EXPECT_EQ(stack.link.unread(), "more");
}

TEST_P(EachFramer, SaysThatTheLinkIsClosedOrALayerMissing)
{
    stack.link.close();
    EXPECT_EQ(send(stack.top, row.payload), code(row.write_fails, FRAMER_CLOSED));
    EXPECT_EQ(receive(stack.top, 9).result, code(row.read_fails, FRAMER_CLOSED));

    stack.link.open();
    stack.link.arrive(came);
    for (QFramer* each : stack.all)
        each->lower_set(nullptr);
    stack.dorv.framer_set(nullptr);
    stack.bytes.link_set(nullptr);
    stack.top.flush();
    EXPECT_EQ(send(stack.top, row.payload), code(row.write_fails, FRAMER_NO_LAYER));
    EXPECT_EQ(receive(stack.top, 9).result, code(row.read_fails, FRAMER_NO_LAYER));
}

TEST_P(EachFramer, SurvivesALinkThatFailsFromAnyCallOn)
{
    const auto good_or_code = [](int good, int result) {
        return testing::AnyOf(good, code(result, FRAMER_CLOSED), code(result, LINK_ERROR));
    };
    for (int good_calls = 0; good_calls < 30; ++good_calls) { // more than any exchange makes
        Stack faulty{Kind(GetParam())};
        faulty.link.good_calls = good_calls;
        faulty.link.reply(row.reply);
        EXPECT_THAT(send(faulty.top, row.payload), good_or_code(row.written, row.write_fails));
        faulty.link.flush();
        faulty.link.arrive(came);
        const Received got = receive(faulty.top, row.payload.size());
        EXPECT_THAT(got.result, good_or_code(row.payload.size(), row.read_fails));
        EXPECT_EQ(got.bytes, got.result > 0 ? row.payload : "");
    }
}

INSTANTIATE_TEST_SUITE_P(Framers, EachFramer, testing::Range(0, int(std::size(ROWS))),
                         [](const auto& info) { return std::string(ROWS[info.param].name); });

TEST(Frames, AreOfAnyLengthButAnImpossibleOne)
{
    constexpr int MOST = FrameBuffer::ON_STACK - RtuFrame::OVERHEAD - Crc16Frame::OVERHEAD;
    for (const int size : {0, 1, 4096, MOST, MOST + 1, MOST + 3, 100000}) {
        Stack stack(RTU);
        stack.rtu.lower_set(&stack.crc16);
        stack.link.device = [](const QByteArray& request) { return request; };
        stack.link.boast = size;
        const QByteArray payload(size, '\xA5');
        frames_on_heap = 0;
        EXPECT_EQ(send(stack.rtu, payload), size + 5);
        EXPECT_EQ(receive(stack.rtu, size).bytes, payload);
        EXPECT_EQ(frames_on_heap > 0, size > MOST) << size;
    }
    for (const Kind kind : {CRC16, RTU, CHAN, CNET})
        for (const int nbytes : {-1, INT_MIN, INT_MAX}) {
            Stack stack(kind);
            char byte = 0;
            EXPECT_EQ(stack.top.write(&byte, nbytes), FRAMER_BAD_SIZE);
            EXPECT_EQ(stack.top.read(&byte, nbytes), kind == CNET ? 0 : FRAMER_BAD_SIZE);
            EXPECT_EQ(stack.dorv.write(&byte, nbytes), 0);
            EXPECT_EQ(stack.link.calls, 0);
        }
}

TEST(Frames, MayGoToAnotherAddressOnce)
{
    Stack stack(RTU);
    EXPECT_EQ(stack.rtu.write_to(0x11, "\x03", 1), 4);
    EXPECT_EQ(send(stack.rtu, "\x03"), 4);
    char byte = 0;
    stack.link.arrive("11034DE1"_hex);
    EXPECT_EQ(stack.rtu.read_from(0x11, &byte, 1), 1);
    stack.link.arrive("FFFF"_hex); // no address, yet a CRC of 0
    EXPECT_EQ(stack.rtu.read_from(0xFF, &byte, 1), FRAMER_BAD_FRAME);

    const std::uint8_t other[] = {0xFE, 0x01};
    for (const QByteArray& response : {"AA010055"_hex, "AA018555"_hex, "AA010055"_hex})
        stack.link.reply(response);
    EXPECT_EQ(stack.cnet.write_to(std::uint16_t(0xFE01), "\x7F", 1), 1);
    EXPECT_EQ(stack.cnet.frame_send(other, "\x7F", 1, 0xD2), CNET_BUSY);
    EXPECT_EQ(stack.cnet.frame_send_retry("", 0, 0xD3), 0);
    EXPECT_EQ(stack.link.written,
              QByteArrayList({"11034DE1"_hex, "01034021"_hex, "AA04D1FE017F55"_hex,
                              "AA04D2FE017F55"_hex, "AA03D3123455"_hex}));
}

TEST(Frames, HaveAPrefixOfAtMostSixteenBytes)
{
    Stack stack(CHAN);
    stack.chan.chan_set("0123456789ABCDEF", 16);
    stack.chan.chan_set("12345678901234567", 17);
    send(stack.chan, ".");
    stack.chan.chan_set(std::uint8_t('x'));
    send(stack.chan, ".");
    EXPECT_EQ(stack.link.written, QByteArrayList({"0123456789ABCDEF.", "x."}));
}

} // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    ++frames_on_heap;
    return ::operator new[](size);
}
