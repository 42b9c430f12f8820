#include "stack/tracedlink.h"

#include <algorithm>

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
    if (tap)
        tap->received(bytes, result);
    return result;
}

void TracedLink::note_sent(const QByteArray& bytes, int result)
{
    log.sent(bytes, result);
    if (tap)
        tap->sent(bytes, result);
}

int TracedLink::read(char* buffer, int nbytes)
{
    return note_received(buffer, read_begun && nbytes > 0 ? read_in_two(buffer, nbytes)
                                                          : lower.read(buffer, nbytes));
}

int TracedLink::read_in_two(char* buffer, int nbytes)
{
    const int first = lower.read(buffer, 1);
    if (first < 1)
        return first;
    read_begun();
    // What the link says after the first byte is said again at the next read.
    return first + (nbytes > 1 ? std::max(0, lower.read(buffer + 1, nbytes - 1)) : 0);
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
    note_sent(QByteArray(buffer, nbytes), result);
    return result;
}

int TracedLink::putchar(int c)
{
    const int result = lower.putchar(c);
    const char byte = char(c);
    if (result == c)
        ++sent;
    note_sent(QByteArray(&byte, 1), result == c ? 1 : result);
    return result;
}
