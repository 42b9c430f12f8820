#include "stack/tracedlink.h"

int TracedLink::open()
{
    const int result = lower.open();
    if (result != 0)
        lower.close(); // one that could not connect may call itself open
    return result;
}

int TracedLink::note_received(const char* buffer, int result)
{
    if (result < 0)
        error = result;
    const QByteArray bytes(buffer, result > 0 ? result : 0);
    quiet = bytes.isEmpty();
    log.received(bytes, result);
    return result;
}

int TracedLink::read(char* buffer, int nbytes)
{
    return note_received(buffer, lower.read(buffer, nbytes));
}

int TracedLink::readline(char* buffer, int size)
{
    return note_received(buffer, lower.readline(buffer, size));
}

int TracedLink::getchar()
{
    const int c = lower.getchar();
    if (c >= 0) {
        const char byte = char(c);
        note_received(&byte, 1);
    }
    return c;
}

int TracedLink::write(const char* buffer, int nbytes)
{
    quiet = true;
    const int result = lower.write(buffer, nbytes);
    if (result > 0)
        sent += result;
    if (result < 0)
        error = result;
    log.sent(QByteArray(buffer, nbytes), result);
    return result;
}

int TracedLink::putchar(int c)
{
    const int result = lower.putchar(c);
    const char byte = char(c);
    if (result == c)
        ++sent;
    log.sent(QByteArray(&byte, 1), result == c ? 1 : result);
    return result;
}
