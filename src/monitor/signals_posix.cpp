#include "monitor/signals.h"

#include "serialport/filedescriptor.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

namespace {
// The ends of a pipe: one for poll(), one for the handler.
FileDescriptor wakes;
FileDescriptor wake;
constexpr int WATCHED[] = {SIGINT, SIGTERM, SIGHUP, SIGCONT, SIGPIPE};
volatile sig_atomic_t asked = 0;
struct sigaction earlier[std::size(WATCHED)];

void on_signal(int number)
{
    const int saved_errno = errno;
    if (number != SIGCONT)
        asked = asked + 1;
    const char byte = char(number);
    const ssize_t ignored = ::write(wake.number(), &byte, 1);
    static_cast<void>(ignored);
    errno = saved_errno;
}
} // namespace

Signals::Signals()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    wakes = FileDescriptor(ends[0]);
    wake = FileDescriptor(ends[1]);
    struct sigaction action = {};
    for (std::size_t i = 0; i < std::size(WATCHED); ++i) {
        // What stdout's reader has done shows in the write.
        action.sa_handler = WATCHED[i] == SIGPIPE ? SIG_IGN : on_signal;
        ::sigaction(WATCHED[i], &action, &earlier[i]);
    }
}

Signals::~Signals()
{
    for (std::size_t i = 0; i < std::size(WATCHED); ++i)
        ::sigaction(WATCHED[i], &earlier[i], nullptr);
    wakes.close();
    wake.close();
}

int Signals::descriptor() const
{
    return wakes.number();
}

int Signals::take()
{
    char number = 0;
    return ::read(wakes.number(), &number, 1) == 1 ? number : 0;
}

int Signals::ends_asked()
{
    return asked;
}
