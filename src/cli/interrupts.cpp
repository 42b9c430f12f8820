#include "cli/interrupts.h"

#include "cli/failure.h"
#include "serialport/filedescriptor.h"

#include <QSocketNotifier>
#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {
volatile std::sig_atomic_t was_raised = 0;

#ifdef Q_OS_UNIX
// The ends of a pipe: one for the event loop, one for the handler.
FileDescriptor wakes;
FileDescriptor wake;
constexpr char STOPPING[] = "\nStopping after the exchange under way; Ctrl-C again ends at once.\n";

void on_signal(int)
{
    // Only what is safe in a handler: a flag, a word to the user, and a byte that wakes the event
    // loop, if there is one.
    const int saved_errno = errno;
    was_raised = 1;
    ssize_t ignored = write(STDERR_FILENO, STOPPING, sizeof STOPPING - 1);
    ignored = write(wake.number(), "", 1);
    static_cast<void>(ignored);
    errno = saved_errno;
}
#endif
} // namespace

#ifdef Q_OS_UNIX

Interrupts::Interrupts()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    wakes = FileDescriptor(ends[0]);
    wake = FileDescriptor(ends[1]);
    auto* notifier = new QSocketNotifier(wakes.number(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit interrupted();
    });
    struct sigaction action = {};
    action.sa_handler = on_signal;
    // RESTART: a blocking exchange runs to its end, as an abort between two bytes helps nobody.
    action.sa_flags = SA_RESTART | int(SA_RESETHAND);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaction(number, &action, nullptr);
}

Interrupts::~Interrupts()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_DFL);
    wakes.close();
    wake.close();
}

#else

Interrupts::Interrupts() = default;
Interrupts::~Interrupts() = default;

#endif

bool Interrupts::raised() const
{
    return was_raised != 0;
}

void Interrupts::check() const
{
    if (raised())
        throw Failure{ExitCode::Interrupted, "interrupted", {}};
}
