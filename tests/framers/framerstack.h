// All framers over one link in memory that can fail, and calls on them as byte arrays.
#pragma once

#include "framers/qframerchan.h"
#include "framers/qframercnet.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "loglines.h"
#include "memorylink.h"
#include "print.h"

#include <gmock/gmock.h>
#include <vector>

inline QByteArray operator""_hex(const char* text, std::size_t size)
{
    return QByteArray::fromHex(QByteArray(text, int(size)));
}

constexpr int LINK_ERROR = -77; // no code of any layer

class FaultyLink : public MemoryLink
{
public:
    int calls = 0;
    int good_calls = INT_MAX; // all later ones fail and don't reach the memory
    int boast = 0;            // what a read reports beyond the bytes that it has stored

    bool is_open() override { return ++calls <= good_calls && MemoryLink::is_open(); }
    int read(char* buffer, int nbytes) override
    {
        const int count = ++calls > good_calls ? LINK_ERROR : MemoryLink::read(buffer, nbytes);
        return count > 0 ? count + boast : count;
    }
    int write(const char* buffer, int nbytes) override
    {
        return ++calls > good_calls ? LINK_ERROR : MemoryLink::write(buffer, nbytes);
    }
    int readline(char* buffer, int size) override
    {
        return ++calls > good_calls ? LINK_ERROR : MemoryLink::readline(buffer, size);
    }
};

enum Kind { CRC16, RTU, CHAN, CNET, RWLT, BYTES, DORV, DORV_0, DORV_1, DORV_7, DORV_RAW };

// One framer of each kind, for tests of the one called `top`.
struct Stack
{
    explicit Stack(Kind kind)
        : top(*all[qMin(kind, DORV)])
    {
        rtu.slave_set(1);
        chan.chan_set(std::uint16_t(0x1234));
        cnet.target_set(std::uint16_t(0x1234));
        dorv.link_set(&link);
        dorv.raw_set(kind == DORV_RAW); // whatever the mode is
        if (kind != DORV)
            dorv.mode_set(kind == DORV_0 ? 0 : kind == DORV_1 ? 1 : 7);
    }

    FaultyLink link;
    QFramerNull bytes{&link};
    QFramerCrc16 crc16{&bytes};
    QFramerRtu rtu{&bytes};
    QFramerChan chan{&bytes};
    QFramerCnet cnet{&bytes};
    QFramerRwlt rwlt{&bytes};
    QFramerDorv dorv{&bytes};
    QFramer* const all[DORV + 1] = {&crc16, &rtu, &chan, &cnet, &rwlt, &bytes, &dorv};
    QFramer& top;
    QSignalSpy log{&top, &QFramer::log};
};

struct Received
{
    int result;
    QByteArray bytes;
};

// What a read stored, with its result. The buffer is of just that size, so that AddressSanitizer
// sees a byte too many, and stays as it was after the payload.
inline Received receive(QFramer& framer, int nbytes)
{
    std::vector<char> buffer(std::size_t(nbytes), '^');
    const int result = framer.read(buffer.data(), nbytes);
    const QByteArray all(buffer.data(), nbytes);
    const QByteArray stored = all.left(qMax(0, result));
    EXPECT_EQ(all, stored.leftJustified(nbytes, '^'));
    return {result, stored};
}

inline int send(QFramer& framer, const QByteArray& payload)
{
    return framer.write(payload.constData(), payload.size());
}
