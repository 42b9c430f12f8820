// What a read makes of what came.
#include "framerstack.h"

namespace {

TEST(Reading, TakesWhatIsRightAndNoMoreThanItMay)
{
    const struct
    {
        Kind kind;
        int nbytes;
        QByteArray came;
        int result;
        QByteArray payload = {}, unread = {};
        const char* log = "";
    } rows[] = {
        {CRC16, 64, "", 0},
        {CRC16, 64, "3132333435363738394B37"_hex, -5}, // high byte first
        {RTU, 64, "", 0},
        {RTU, 64, "1103006B00037687"_hex, -5}, // of another device
        {RTU, 64, "010300000001840A01"_hex, -5},
        {CHAN, 64, "1234"_hex, -5},
        {CHAN, 64, "123541"_hex, -5},
        {RWLT, 64, "ABBA"_hex, 0, "", "", "rwlt: read frame failed or time out, nbytes=2"},
        {RWLT, 64, "AA00BA"_hex, 0, "", "", "rwlt: not a valid data frame, nbytes=3"},
        {RWLT, 64, "AB00BB00"_hex, 0, "", "", "rwlt: not a valid data frame, nbytes=4"},
        {CNET, 64, "AA04D112357F55"_hex, 0, "", "", "cnet: frame not from target (1235H)"},
        {CNET, 64, "AA04D100347F55"_hex, 0, "", "", "cnet: frame not from target (34H)"},
        {CNET, 64, "AA03D1123455"_hex, 0, "", "", "cnet: read frame failed or time out, nbytes=6"},
        {CNET, 64, "AB04D112347F55"_hex, 0, "", "", "cnet: not a valid data frame, nbytes=7"},
        {CNET, 64, "AA04D112347F54"_hex, 0, "", "", "cnet: not a valid data frame, nbytes=7"},
        {CNET, 64, "AA04D212347F55"_hex, 0, "", "", "cnet: not a valid data frame, nbytes=7"},
        {CNET, 64, "AA05D112347F55"_hex, 0, "", "", "cnet: not a valid data frame, nbytes=7"},
        {DORV_0, 8, "+macrx=2\r\nAB", 2, "AB"},
        {DORV_1, 8, "+pmacrx:2\r\nAB", 2, "AB"},
        {DORV, 3, "+radiorx=5\r\nHELLO", 3, "HEL", "LO"},
        {DORV_7, 12, "+data 12\r\nHELLO, WORLD", 12, "HELLO, WORLD"},
        {DORV, 2, "noise +radiorx= 2, more\nAB", 2, "AB"},
        {DORV, 8, "+radiorx=5\r\nHE", 2, "HE"},
        {DORV, 4, "+radiorx=99999999999999\nABCDE", 4, "ABCD", "E"},
        {DORV, 4, "+radiorx=-2\nAB", 0, "", "AB"},
        {DORV, 4, "+radiorx=-99999999999999\nAB", 0, "", "AB"},
        {DORV, 4, "+radiorx=x\nAB", 0, "", "AB"},
        {DORV, 4, "+radiorx", 0},
        {DORV, 4, "+macrx=2\r\nAB", 0, "", "AB"},
        {DORV_RAW, 8, "+radiorx=-70,9,414243\r\nXY", 3, "ABC", "XY"},
        {DORV_RAW, 2, "+radiorx=-70,9,414243\r\n", 2, "AB"},
        {DORV_RAW, 8, "+radiorx=,,41 4243\r\n", 3, "ABC"},
        {DORV_RAW, 8, "+radiorx=-70,9,12345\r\n", 3, "012345"_hex},
        {DORV_RAW, 8, "+macrx=-70,9,41\r\n", 0, "", "", "dorv_r: cmd not match"},
        {DORV_RAW, 8, "+radiorx,9\r\n", 0, "", "", "dorv_r: no rssi find"}, // that's the separator
        {DORV_RAW, 8, "+radiorx", 0, "", "", "dorv_r: no rssi find"},
        {DORV_RAW, 8, "+radiorx=-70,9\r\n", 0, "", "", "dorv_r: no snr find"},
        {DORV_RAW, 8, QByteArray(80, '.'), 0, "", QByteArray(9, '.'), "dorv_r: cmd not match"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.came.toPercentEncoding().toStdString());
        Stack stack(row.kind);
        stack.dorv.verbose_set(true);
        stack.link.arrive(row.came);
        const Received got = receive(stack.top, row.nbytes);
        EXPECT_EQ(got.result, row.result);
        EXPECT_EQ(got.bytes, row.payload);
        EXPECT_EQ(stack.link.unread(), row.unread);
        // The first line of DORV is the report.
        EXPECT_EQ(lines(stack.log).value(row.kind >= DORV ? 1 : 0), row.log);
    }
}

TEST(Reading, ReturnsTheLengthOfAWholeText)
{
    Stack stack(DORV);
    const std::tuple<const char*, int, const char*> rows[] = {{"+radiorx=1,2,hello\r\n", 5, "hel"},
                                                              {"+radiorx=1,2,\r\n", 0, "hel"},
                                                              {"+macrx=1,2,ho\r\n", 0, "hel"}};
    QByteArray buffer(3, '^');
    for (const auto& [came, result, stored] : rows) {
        stack.link.arrive(came);
        EXPECT_EQ(stack.dorv.text_read("+radiorx", buffer.data(), 3), result);
        EXPECT_EQ(buffer, stored);
    }
}

} // namespace
