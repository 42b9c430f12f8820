// Layers to put under a framer, and calls on it as byte arrays.
#pragma once

#include "framers/qframer.h"
#include "framers/qframerchan.h"
#include "framers/qframercnet.h"
#include "framers/qframercrc16.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "loglines.h"
#include "print.h"

#include <deque>
#include <vector>

inline QByteArray operator""_hex(const char* text, std::size_t size)
{
    return QByteArray::fromHex(QByteArray(text, int(size)));
}

// A framer that notes each call and answers reads from a list: a byte array, or an error code.
class NotingFramer : public QFramer
{
public:
    struct Answer
    {
        QByteArray bytes;
        int error = 0;
    };

    QStringList calls;
    std::deque<Answer> answers; // 0 when it has run out
    int write_error = 0;

    void flush() override { calls += "flush"; }
    int write(const char* buffer, int nbytes) override
    {
        calls += "write " + QByteArray(buffer, nbytes).toHex();
        return write_error ? write_error : nbytes;
    }
    int read(char* buffer, int nbytes) override
    {
        calls += QString("read %1").arg(nbytes);
        if (answers.empty())
            return 0;
        const Answer answer = answers.front();
        answers.pop_front();
        const int count = int(answer.bytes.left(nbytes).toStdString().copy(buffer, size_t(nbytes)));
        return answer.error ? answer.error : count;
    }
};

// One framer of each kind that adds a frame to the layer below.
enum Kind { CRC16, RTU, CHAN, CNET, RWLT };

struct Framers
{
    explicit Framers(QFramer* lower)
        : crc16(lower)
        , rtu(lower)
        , chan(lower)
        , cnet(lower)
        , rwlt(lower)
    {
        rtu.slave_set(1);
        chan.chan_set(std::uint16_t(0x1234));
        cnet.target_set(std::uint16_t(0x1234));
    }

    QFramerCrc16 crc16;
    QFramerRtu rtu;
    QFramerChan chan;
    QFramerCnet cnet;
    QFramerRwlt rwlt;
    QFramer* const all[5] = {&crc16, &rtu, &chan, &cnet, &rwlt};
};

// What a read stored, with its result. Its buffer is of just that size, so that AddressSanitizer
// sees a byte too many, and `touched` says whether a read without success wrote to it.
struct Received
{
    int result;
    QByteArray bytes;
    bool touched;
};

inline Received receive(QFramer& framer, int nbytes)
{
    const std::vector<char> untouched(std::size_t(nbytes), '\x5E');
    std::vector<char> buffer = untouched;
    const int result = framer.read(buffer.data(), nbytes);
    return {result, QByteArray(buffer.data(), qBound(0, result, nbytes)), buffer != untouched};
}

inline int send(QFramer& framer, const QByteArray& payload)
{
    return framer.write(payload.constData(), payload.size());
}
