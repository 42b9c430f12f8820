// Who wants to know what passes a link.
#pragma once

#include <QByteArray>
#include <QString>

// Any thread may call it.
class ExchangeSink
{
public:
    virtual ~ExchangeSink() = default;

    // `result` is what the link returned: fewer than the bytes, or an error.
    virtual void sent(const QByteArray& bytes, int result) = 0;
    // `result` is the count, 0 when nothing came in time, or an error.
    virtual void received(const QByteArray& bytes, int result) = 0;
    // What a layer logs.
    virtual void note(const QString& text) = 0;
};
