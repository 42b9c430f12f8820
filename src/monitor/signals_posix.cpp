#include "monitor/signals.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

namespace {
int ends[2] = {-1, -1};
constexpr int WATCHED[] = {SIGINT, SIGTERM, SIGHUP, SIGCONT, SIGPIPE};
volatile sig_atomic_t asked = 0;
struct sigaction earlier[std::size(WATCHED)];

void on_signal(int number)
{
    const int saved_errno = errno;
    if (number != SIGCONT)
        asked = asked + 1;
    const char byte = char(number);
    const ssize_t ignored = ::write(ends[1], &byte, 1);
    static_cast<void>(ignored);
    errno = saved_errno;
}
} // namespace

Signals::Signals()
{
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
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
    ::close(ends[0]);
    ::close(ends[1]);
}

int Signals::descriptor() const
{
    return ends[0];
}

int Signals::take()
{
    char number = 0;
    return ::read(ends[0], &number, 1) == 1 ? number : 0;
}

int Signals::ends_asked()
{
    return asked;
}
