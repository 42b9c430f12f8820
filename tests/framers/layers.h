// Layers to put under a framer, and calls on it as byte arrays.
#pragma once

#include "print.h"
#include "qframer.h"

#include <QSignalSpy>
#include <cstring>
#include <deque>

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
        calls += "write " + QByteArray(buffer, nbytes).toHex(' ');
        return write_error ? write_error : nbytes;
    }
    int read(char* buffer, int nbytes) override
    {
        calls += QString("read %1").arg(nbytes);
        if (answers.empty())
            return 0;
        const Answer answer = answers.front();
        answers.pop_front();
        if (answer.error)
            return answer.error;
        const QByteArray bytes = answer.bytes.left(nbytes);
        std::copy(bytes.begin(), bytes.end(), buffer);
        return bytes.size();
    }
};

// What a read stored, with its result. Its buffer is of just that size, so that AddressSanitizer
// sees a byte too many, and `touched` tells whether a read without success wrote to it.
struct Received
{
    int result;
    QByteArray bytes;
    bool touched;
};

template <typename Read> Received receive_by(Read read, int nbytes)
{
    constexpr char UNTOUCHED = '\x5E';
    std::vector<char> buffer(std::size_t(nbytes), UNTOUCHED);
    const int result = read(buffer.data(), nbytes);
    const bool touched =
        std::any_of(buffer.begin(), buffer.end(), [](char c) { return c != UNTOUCHED; });
    return {result, QByteArray(buffer.data(), qBound(0, result, nbytes)), touched};
}

inline Received receive(QFramer& framer, int nbytes)
{
    return receive_by([&](char* buffer, int size) { return framer.read(buffer, size); }, nbytes);
}

inline int send(QFramer& framer, const QByteArray& payload)
{
    return framer.write(payload.constData(), payload.size());
}

// The log since the last call.
inline QStringList lines(QSignalSpy& log)
{
    QStringList texts;
    while (!log.isEmpty())
        texts += log.takeFirst().first().toString();
    return texts;
}

inline QByteArray sent_frame(NotingFramer& below, QFramer& framer, const QByteArray& payload)
{
    below.calls.clear();
    send(framer, payload);
    const QString call = below.calls.filter("write ").value(0);
    return QByteArray::fromHex(call.mid(int(std::strlen("write "))).toLatin1());
}
