#include "monitor/screen.h"

#include <QVector>
#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <cwchar>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {
termios before; // what the terminal is given back
volatile sig_atomic_t taken = 0;

// The signals of a program that fails; the others end the session in good order.
constexpr int FATAL[] = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGQUIT};

void give_back()
{
    if (taken)
        ::tcsetattr(STDIN_FILENO, TCSANOW, &before);
    taken = 0;
}

void on_fatal(int number)
{
    give_back();
    ::signal(number, SIG_DFL);
    ::raise(number);
}
} // namespace

Screen::Screen()
    : output(::isatty(STDOUT_FILENO) != 0)
{
    std::setlocale(LC_CTYPE, "");
}

Screen::~Screen()
{
    give_back();
}

void Screen::take_keys()
{
    if (::isatty(STDIN_FILENO) == 0 || ::tcgetattr(STDIN_FILENO, &before) != 0)
        return;
    keys = true;
    for (const int number : FATAL)
        std::signal(number, on_fatal);
    retake();
}

void Screen::retake()
{
    if (!keys)
        return;
    termios settings = before;
    // Output goes on as the shell has it: a line feed still returns to the left.
    settings.c_iflag &= ~tcflag_t(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IXON);
    settings.c_lflag &= ~tcflag_t(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    taken = 1;
    ::tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

int Screen::width() const
{
    winsize size = {};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

bool Screen::write(const QByteArray& bytes)
{
    for (int done = 0; done < bytes.size();) {
        const ssize_t count =
            ::write(STDOUT_FILENO, bytes.constData() + done, std::size_t(bytes.size() - done));
        if (count >= 0) {
            done += int(count);
        } else if (errno == EAGAIN) {
            pollfd room = {STDOUT_FILENO, POLLOUT, 0}; // shared with a program that set it so
            ::poll(&room, 1, -1);
        } else if (errno != EINTR) {
            reason = QString::fromLocal8Bit(std::strerror(errno));
            return false;
        }
    }
    return true;
}

int cells_of(const QString& text)
{
    int cells = 0;
    for (const uint code : text.toUcs4())
        cells += std::max(0, ::wcwidth(wchar_t(code)));
    return cells;
}
