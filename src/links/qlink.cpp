#include "links/qlink.h"

bool QLink::can_read_line()
{
    return false;
}

int QLink::readline(char* buffer, int size)
{
    if (size < 1)
        return 0;
    int count = 0;
    while (count < size - 1) {
        const int c = getchar();
        if (c < 0)
            break;
        buffer[count++] = char(c & 0xFF);
        if (c == '\n')
            break;
    }
    buffer[count] = '\0';
    return count;
}
