#include "monitor/screen.h"

#include "monitor/signals.h"

#include <QVector>
#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <cwchar>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {
termios before; // what the terminal is given back
volatile sig_atomic_t taken = 0;

// How often a write that waits for room looks for a signal.
constexpr int LOOK_MS = 100;
// A reader that takes nothing for so long is not waited for at the end.
constexpr int FAREWELL_MS = 5000;
// What poll() says has room takes so many at once. A file has no such limit.
constexpr int PIECE = 4096;

bool is_file(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

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
    , file(is_file(STDOUT_FILENO))
{
    std::setlocale(LC_CTYPE, "");
}

Screen::~Screen()
{
    give_back();
}

void Screen::take_keys(char prefix)
{
    quit = QByteArray(1, prefix) + 'q';
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
        if (!file && !has_room())
            return true;
        const int left = int(bytes.size()) - done;
        const ssize_t count = ::write(STDOUT_FILENO, bytes.constData() + done,
                                      std::size_t(file ? left : std::min(left, PIECE)));
        if (count >= 0) {
            done += int(count);
        } else if (errno != EINTR && errno != EAGAIN) {
            reason = QString::fromLocal8Bit(std::strerror(errno));
            return false;
        }
    }
    return true;
}

// Waits for it. False when the reader takes nothing and the end was asked for.
bool Screen::has_room()
{
    for (int waited_ms = 0; !given_up;) {
        pollfd room = {STDOUT_FILENO, POLLOUT, 0};
        if (::poll(&room, 1, LOOK_MS) > 0)
            return true;
        look_at_keys();
        const int asked = Signals::ends_asked();
        waited_ms = asked > 0 ? waited_ms + LOOK_MS : 0;
        given_up = asked > 1 || waited_ms >= FAREWELL_MS || typed.contains(quit);
    }
    return false;
}

void Screen::look_at_keys()
{
    pollfd terminal = {STDIN_FILENO, POLLIN, 0};
    char bytes[256];
    if (!keys || ::poll(&terminal, 1, 0) <= 0)
        return;
    typed.append(bytes, int(std::max(ssize_t(0), ::read(STDIN_FILENO, bytes, sizeof bytes))));
}

int cells_of(const QString& text)
{
    int cells = 0;
    for (const uint code : text.toUcs4())
        cells += std::max(0, ::wcwidth(wchar_t(code)));
    return cells;
}
