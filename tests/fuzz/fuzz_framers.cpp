// Feeds each framer over a link in memory with bytes of libFuzzer's: the first says how much the
// reader asks for, the second is the framer's address or mode, the rest is what comes.
#include "fuzzing.h"
#include "memorylink.h"
#include "qframerchan.h"
#include "qframercnet.h"
#include "qframercrc16.h"
#include "qframerdorv.h"
#include "qframernull.h"
#include "qframerrtu.h"
#include "qframerrwlt.h"

#include <vector>

namespace {

constexpr std::size_t HEADER = 2;
constexpr int STEP = 8; // so that a byte reaches past frames that need no heap

// Of dorv's mode byte.
constexpr std::uint8_t RAW = 0x80;
constexpr std::uint8_t TEXT = 0x40;

// The payload that `read` stores, in a buffer of just the size asked for: a byte too many is
// AddressSanitizer's to find.
template <typename Read> QByteArray read_payload(int nbytes, Read read)
{
    std::vector<char> buffer(std::size_t(nbytes), '\0');
    const int result = read(buffer.data(), nbytes);
    require(result <= nbytes);
    return {buffer.data(), qMax(0, result)};
}

// A payload that comes up must be the one whose frame came: sent again, it gives the same bytes.
void check_frame(MemoryLink& link, QFramer& framer, int nbytes, const QByteArray& came)
{
    link.flush();
    link.arrive(came);
    const QByteArray payload =
        read_payload(nbytes, [&](char* buffer, int size) { return framer.read(buffer, size); });
    const QByteArray unread = link.unread();
    if (payload.isEmpty())
        return;
    framer.write(payload.constData(), payload.size());
    require(link.written.last() + unread == came);
}

// What comes as a reply to a send, after which the device is silent.
void check_reply(MemoryLink& link, QFramer& framer, const QByteArray& came, bool good)
{
    link.reply(came);
    const int sent = framer.write("ping", 4);
    require(sent == 0 || (sent == 4 && good));
}

void check_report(MemoryLink& link, QFramerDorv& framer, std::uint8_t mode, int nbytes,
                  const QByteArray& came)
{
    framer.raw_set((mode & RAW) != 0);
    framer.mode_set(mode & 3);
    link.flush();
    link.arrive(came);
    const QByteArray payload = read_payload(nbytes, [&](char* buffer, int size) {
        if ((mode & TEXT) == 0)
            return framer.read(buffer, size);
        return qMin(size, framer.text_read("+radiorx", buffer, size));
    });
    if ((mode & RAW) == 0) // what isn't decoded stands in what came
        require(came.contains(payload));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < HEADER)
        return 0;
    const int nbytes = data[0] * STEP;
    const std::uint8_t choice = data[1];
    const QByteArray came(reinterpret_cast<const char*>(data) + HEADER, int(size - HEADER));

    MemoryLink link;
    QFramerNull bytes(&link);
    QFramerCrc16 crc16(&bytes);
    QFramerRtu rtu(&bytes);
    rtu.slave_set(choice);
    QFramerChan chan(&bytes);
    chan.chan_set("0123456789ABCDEF", choice % 17u);
    QFramerRwlt rwlt(&bytes);
    QFramerCnet cnet(&bytes);
    cnet.target_set(std::uint16_t(choice));
    for (QFramer* framer : std::initializer_list<QFramer*>{&crc16, &rtu, &chan, &rwlt, &cnet})
        check_frame(link, *framer, nbytes, came);
    check_reply(link, cnet, came, came.startsWith(QByteArray("\xAA\x01\0\x55", 4)));

    QFramerDorv dorv(&bytes);
    dorv.link_set(&link);
    dorv.verbose_set(true);
    check_report(link, dorv, choice, nbytes, came);
    check_reply(link, dorv, came, came.contains("ok"));
    return 0;
}
