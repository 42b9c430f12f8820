// QFramerCnet: sends to a target, and the local device's response to each.
#include "layers.h"
#include "qframercnet.h"

#include <gtest/gtest.h>

namespace {

const QByteArray SENT = "AA010055"_hex;
const QByteArray AGAIN = "AA018155"_hex;
const QByteArray BUSY = "AA018555"_hex;
const QStringList EXCHANGE = {"flush", "write aa 05 d1 12 34 01 02 55", "read 4"};

struct Cnet
{
    NotingFramer below;
    QFramerCnet framer{&below};
    QSignalSpy log{&framer, &QFramer::log};

    Cnet() { framer.target_set(std::uint16_t(0x1234)); }
};

TEST(QFramerCnet, JudgesTheLocalResponse)
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
        {{{}, -5}, -5, "cnet: local response failed (Input/output error)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.bytes.toHex(' ').toStdString());
        Cnet cnet;
        cnet.below.answers = {row.came};
        cnet.below.write_error =
            row.result > 0 ? 0 : -6; // a failed send shows in the response only
        EXPECT_EQ(send(cnet.framer, "0102"_hex), row.result);
        EXPECT_EQ(lines(cnet.log).join('\n'), row.log);
        EXPECT_EQ(cnet.below.calls, EXCHANGE);
    }
}

TEST(QFramerCnet, RepeatsWhileTheDeviceIsBusy)
{
    Cnet cnet;
    cnet.below.answers = {{AGAIN}, {BUSY}, {SENT}};
    EXPECT_EQ(send(cnet.framer, "0102"_hex), 2);
    EXPECT_EQ(cnet.below.calls, EXCHANGE + EXCHANGE + EXCHANGE);
    EXPECT_EQ(lines(cnet.log), QStringList());

    cnet.below.answers = {{AGAIN}, {BUSY}, {"AA018A55"_hex}};
    EXPECT_EQ(send(cnet.framer, "0102"_hex), 0);
    EXPECT_EQ(lines(cnet.log), QStringList("cnet: send failed (errno=8aH)"));
}

TEST(QFramerCnet, LetsItsOwnerEndTheRepeats)
{
    Cnet cnet;
    int asked = 0;
    cnet.framer.keep_trying_set([&] { return ++asked < 3; });
    cnet.below.answers = {{BUSY}, {BUSY}, {AGAIN}, {SENT}};
    EXPECT_EQ(send(cnet.framer, "0102"_hex), CNET_TRY_AGAIN);
    EXPECT_EQ(cnet.below.calls, EXCHANGE + EXCHANGE + EXCHANGE);
    cnet.framer.keep_trying_set({});
    EXPECT_EQ(send(cnet.framer, "0102"_hex), 2);
    EXPECT_EQ(asked, 3);
}

TEST(QFramerCnet, AddressesOneFrameWithoutChangingTheTarget)
{
    const std::uint8_t other[] = {0xFE, 0x01};
    Cnet cnet;
    cnet.below.answers = {{SENT}, {SENT}, {BUSY}, {SENT}};
    EXPECT_EQ(cnet.framer.write_to(std::uint16_t(0xFE01), "\x7F", 1), 1);
    EXPECT_EQ(cnet.framer.write_to(other, "\x7F", 1), 1);
    EXPECT_EQ(cnet.framer.frame_send(other, "\x7F", 1, 0xD2), CNET_BUSY);
    EXPECT_EQ(cnet.framer.frame_send_retry("", 0, 0xD3), 0);
    EXPECT_EQ(cnet.below.calls.filter("write"),
              QStringList({"write aa 04 d1 fe 01 7f 55", "write aa 04 d1 fe 01 7f 55",
                           "write aa 04 d2 fe 01 7f 55", "write aa 03 d3 12 34 55"}));
}

TEST(QFramerCnet, CarriesTheLongestPayloadAndRefusesALongerOne)
{
    Cnet cnet;
    cnet.below.answers = {{SENT}};
    const QByteArray longest(252, '\x55');
    const QByteArray frame = sent_frame(cnet.below, cnet.framer, longest);
    EXPECT_EQ(quint8(frame.at(1)), 0xFF);
    cnet.below.answers = {{frame}};
    EXPECT_EQ(receive(cnet.framer, 400).bytes, longest);

    cnet.below.calls.clear();
    EXPECT_EQ(send(cnet.framer, QByteArray(253, '\0')), FRAMER_BAD_SIZE);
    EXPECT_EQ(cnet.framer.write(nullptr, -1), FRAMER_BAD_SIZE);
    EXPECT_EQ(cnet.framer.read(nullptr, -1), 0);
    EXPECT_EQ(cnet.below.calls, QStringList());
}

} // namespace
