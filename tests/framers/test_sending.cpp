// What a send makes of the device's reply.
#include "framerstack.h"

namespace {

const QByteArray SENT = "AA010055"_hex;
const QByteArray AGAIN = "AA018155"_hex;
const QByteArray BUSY = "AA018555"_hex;
const QByteArray CNET_HEAD = "AA05D11234"_hex;

TEST(Sending, SucceedsOnlyWhenTheDeviceSaysSo)
{
    const QByteArray lengthy = "long " + QByteArray(70, '.') + "ok\r\n";
    const struct
    {
        Kind kind;
        QByteArray head, reply; // the head is of what goes out
        int result;
        QByteArray unread;
        const char* log = "";
    } rows[] = {
        {CNET, CNET_HEAD, SENT + "more", 2, "more"},
        {CNET, CNET_HEAD, "AA018A55"_hex, 0, "", "cnet: send failed (errno=8aH)"},
        {CNET, CNET_HEAD, "AA010755"_hex, 0, "", "cnet: send failed (errno=07H)"},
        {CNET, CNET_HEAD, "AA020055"_hex, 0, "", "cnet: response error, lost sync ?"},
        {CNET, CNET_HEAD, "AB010055"_hex, 0, "", "cnet: response error, lost sync ?"},
        {CNET, CNET_HEAD, "AA010056"_hex, 0, "", "cnet: response error, lost sync ?"},
        {CNET, CNET_HEAD, "AA0100"_hex, 0, "", "cnet: local no response"},
        {DORV_0, "at+mactx=2\r", "+mactx: ok, queued\r\nnext", 2, "next"},
        {DORV_1, "at+pmactx=2\r", "ok", 2, ""},                // without a line's end
        {DORV, "at+radiotx=2\r", lengthy, 0, lengthy.mid(63)}, // cut before its "ok"
        {DORV_7, "at+mac_send=2\r", "OK\r\n", 0, ""},
        {DORV_RAW, "at+radiotxraw=2\r", "\n", 0, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reply.toPercentEncoding().toStdString());
        Stack stack(row.kind);
        stack.link.reply(row.reply);
        EXPECT_EQ(send(stack.top, "12"), row.result);
        EXPECT_TRUE(stack.link.written.value(0).startsWith(row.head + "12"));
        EXPECT_EQ(stack.link.unread(), row.unread);
        EXPECT_EQ(lines(stack.log).join('\n'), row.log);
    }
    Stack stack(CNET);
    stack.bytes.link_set(nullptr);
    EXPECT_EQ(send(stack.cnet, "12"), FRAMER_NO_LAYER);
    EXPECT_EQ(lines(stack.log), QStringList("cnet: local response failed (No such device)"));
}

TEST(Sending, RepeatsWhileTheDeviceIsBusyAndItsOwnerLikes)
{
    Stack stack(CNET);
    for (const QByteArray& response : {AGAIN, BUSY, SENT, BUSY, BUSY, AGAIN, SENT})
        stack.link.reply(response);
    EXPECT_EQ(send(stack.cnet, "12"), 2);
    EXPECT_EQ(stack.link.written.size(), 3);
    int asked = 0;
    stack.cnet.keep_trying_set([&] { return ++asked < 3; });
    EXPECT_EQ(send(stack.cnet, "12"), CNET_TRY_AGAIN);
    EXPECT_EQ(stack.link.written.count("AA05D11234313255"_hex), 6);
}

TEST(Sending, CarriesTheLongestPayloadOfCnet)
{
    Stack stack(CNET);
    const QByteArray longest(252, '\x55');
    stack.link.reply(SENT);
    EXPECT_EQ(send(stack.cnet, longest), 252);
    EXPECT_EQ(send(stack.cnet, longest + '.'), FRAMER_BAD_SIZE);
    EXPECT_EQ(stack.link.written, QByteArrayList{"AAFFD11234"_hex + longest + '\x55'});
    stack.link.arrive(stack.link.written.first());
    EXPECT_EQ(receive(stack.cnet, 400).bytes, longest);
}

TEST(Sending, AwaitsNoReplyOfDorvToWhatDidNotGoOut)
{
    Stack stack(DORV);
    stack.dorv.verbose_set(true);
    stack.link.reply("ok\n");
    EXPECT_EQ(send(stack.dorv, "12"), 2);
    EXPECT_EQ(lines(stack.log), QStringList({"dorv_w: at+radiotx=2\r (31 32)", "dorv_r: (ok\n)"}));
    stack.link.arrive("+radiorx=1\nA");
    receive(stack.dorv, 1);
    EXPECT_EQ(lines(stack.log), QStringList("dorv_r: +radiorx=1\n"));
    stack.dorv.verbose_set(false);
    stack.link.write_limit = 5;
    stack.link.reply("ok\n");
    EXPECT_EQ(send(stack.dorv, "12"), 0);
    EXPECT_EQ(stack.link.unread(), "ok\n");
    stack.link.write_limit = INT_MAX;
    stack.dorv.link_set(nullptr);
    EXPECT_EQ(send(stack.dorv, "12"), 0);
    EXPECT_EQ(receive(stack.dorv, 8).result, 0);
    EXPECT_EQ(lines(stack.log), QStringList());
}

} // namespace
