// The descriptors 0 to 2, which are closed when a program is started with <&- or >&-.
#pragma once

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

// To be called first of all: else the next file or port that is opened would be stdin or stdout,
// and get what is meant for these. A write to a closed one still fails, and a read ends.
inline void fill_standard_streams()
{
#ifndef _WIN32
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
        if (::fcntl(fd, F_GETFD) < 0 && ::open("/dev/null", O_RDONLY) != fd)
            return;
#endif
}
