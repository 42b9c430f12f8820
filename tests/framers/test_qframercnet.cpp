// QFramerCnet: sends to a target, and the local device's response to each.
#include "layers.h"

#include <gtest/gtest.h>

namespace {

const QByteArray SENT = "AA010055"_hex;
const QByteArray AGAIN = "AA018155"_hex;
const QByteArray BUSY = "AA018555"_hex;
const QStringList EXCHANGE = {"flush", "write aa05d11234010255", "read 4"};

struct CnetFramer : testing::Test
{
    NotingFramer below;
    QFramerCnet framer{&below};
    QSignalSpy log{&framer, &QFramer::log};

    CnetFramer() { framer.target_set(std::uint16_t(0x1234)); }
};

TEST_F(CnetFramer, JudgesTheLocalResponse)
{
    const struct
    {
        NotingFramer::Answer came;
        int result;
        QString log;
    } rows[] = {
        {{SENT}, 2, {}},
        {{"AA018A55"_hex}, 0, "cnet: send failed (errno=8aH)"},
        {{"AA010755"_hex}, 0, "cnet: send failed (errno=07H)"},
        {{"AA020055"_hex}, 0, "cnet: response error, lost sync ?"},
        {{"AB010055"_hex}, 0, "cnet: response error, lost sync ?"},
        {{"AA010056"_hex}, 0, "cnet: response error, lost sync ?"},
        {{"AA0100"_hex}, 0, "cnet: local no response"},
        {{}, 0, "cnet: local no response"},
        {{{}, -19}, -19, "cnet: local response failed (No such device)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.bytes.toHex().toStdString());
        below.calls.clear();
        below.answers = {row.came};
        below.write_error = row.result > 0 ? 0 : -6; // a failed send shows in the response only
        EXPECT_EQ(send(framer, "0102"_hex), row.result);
        EXPECT_EQ(lines(log).join('\n'), row.log);
        EXPECT_EQ(below.calls, EXCHANGE);
    }
}

TEST_F(CnetFramer, RepeatsWhileTheDeviceIsBusyAndItsOwnerLikes)
{
    below.answers = {{AGAIN}, {BUSY}, {SENT}};
    EXPECT_EQ(send(framer, "0102"_hex), 2);
    EXPECT_EQ(below.calls, EXCHANGE + EXCHANGE + EXCHANGE);

    int asked = 0;
    framer.keep_trying_set([&] { return ++asked < 3; });
    below.answers = {{BUSY}, {BUSY}, {AGAIN}, {SENT}};
    EXPECT_EQ(send(framer, "0102"_hex), CNET_TRY_AGAIN);
    EXPECT_EQ(below.answers.size(), 1u);
    EXPECT_EQ(lines(log), QStringList());
}

TEST_F(CnetFramer, AddressesOneFrameWithoutChangingTheTarget)
{
    const std::uint8_t other[] = {0xFE, 0x01};
    below.answers = {{SENT}, {BUSY}, {SENT}};
    EXPECT_EQ(framer.write_to(std::uint16_t(0xFE01), "\x7F", 1), 1);
    EXPECT_EQ(framer.frame_send(other, "\x7F", 1, 0xD2), CNET_BUSY);
    EXPECT_EQ(framer.frame_send_retry("", 0, 0xD3), 0);
    EXPECT_EQ(below.calls.filter("write"),
              QStringList({"write aa04d1fe017f55", "write aa04d2fe017f55", "write aa03d3123455"}));
}

TEST_F(CnetFramer, CarriesTheLongestPayloadAndRefusesALongerOne)
{
    const QByteArray longest(252, '\x55');
    const QByteArray frame = "AAFFD11234"_hex + longest + '\x55';
    below.answers = {{SENT}, {frame}};
    EXPECT_EQ(send(framer, longest), 252);
    EXPECT_EQ(below.calls.value(1), "write " + frame.toHex());
    EXPECT_EQ(receive(framer, 400).bytes, longest);

    below.calls.clear();
    EXPECT_EQ(send(framer, QByteArray(253, '\0')), FRAMER_BAD_SIZE);
    EXPECT_EQ(framer.write(nullptr, -1), FRAMER_BAD_SIZE);
    EXPECT_EQ(framer.read(nullptr, -1), 0);
    EXPECT_EQ(below.calls, QStringList());
}

} // namespace
