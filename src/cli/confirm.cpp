#include "cli/confirm.h"

#include "cli/failure.h"

#ifdef Q_OS_UNIX
#include <poll.h>
#include <unistd.h>

// One line from stdin. Throws Failure when a signal comes first: a read would begin anew after it,
// a poll ends.
static QByteArray typed_line(const Interrupts& interrupts)
{
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, -1) < 0)
        interrupts.check();
    char line[100] = {};
    const ssize_t size = read(STDIN_FILENO, line, sizeof line);
    return QByteArray(line, int(size > 0 ? size : 0)).trimmed().toLower();
}

void confirm(const QString& question, Console& console, const Interrupts& interrupts)
{
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0)
        return;
    console.note(question + " Type yes to go on, or give --yes:");
    const QByteArray answer = typed_line(interrupts);
    if (answer != "yes" && answer != "y")
        throw Failure{ExitCode::Interrupted, "not done, as the answer wasn't yes", {}};
}

#else

void confirm(const QString&, Console&, const Interrupts&) {}

#endif
