// One exchange through a stack: what was asked, and what came of it. A value.
#pragma once

#include "stack/stack.h"

#include <QCoreApplication>

struct ExchangeRequest
{
    StackDescription stack; // of the open link
    QByteArray payload;
    int most = 0; // bytes of payload awaited; a read ends when so many have come, or in silence
};

// Bytes that passed the link together.
struct WirePart
{
    bool sent = false;
    QByteArray bytes;
    double at_ms = 0; // since the first byte was sent; of a reply, when its first byte came
};

//   Answered    the reply is a frame
//   NotSent     the frame couldn't be sent, or what is below a framer didn't take it
//   NoAnswer    nothing came in time
//   BadAnswer   what came is no frame
//   Lost        the link has gone
//   Stopped     before it was sent
enum class ExchangeEnding { Answered, NotSent, NoAnswer, BadAnswer, Lost, Stopped };

struct ExchangeRecord
{
    Q_DECLARE_TR_FUNCTIONS(ExchangeRecord)
public:
    ExchangeRequest request;
    std::int64_t time_ms = 0; // since the epoch
    ExchangeEnding ending = ExchangeEnding::Lost;
    LinkProblem link = {LinkTrouble::ConnectionLost, {}}; // how the link looked at the end
    QVector<WirePart> wire;
    QByteArray reply; // payload
    // From the last byte of the request to the first of the reply; below 0 without one. A datagram
    // comes as a whole, and counts when the read has ended.
    double wait_ms = -1;

    // "12.4 ms"; empty without a reply.
    QString wait_text() const;
    // How it has ended, in a sentence with what to do next.
    QString sentence() const;
    // All of it, a line for 16 bytes; of long ones only the beginning.
    QString details() const;
    // What does the same: tarnwickctl and its arguments, for a POSIX shell.
    QString command() const;
};
