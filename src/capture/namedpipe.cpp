#include "capture/namedpipe.h"

#ifdef Q_OS_UNIX

#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr int READER_WAIT_MS = 3000; // a reader that a script starts just before
constexpr int AGAIN_MS = 50;
} // namespace

bool is_named_pipe(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

int open_named_pipe(const QString& path, QString& reason)
{
    const QByteArray name = QFile::encodeName(path);
    int descriptor = -1;
    for (int waited_ms = 0; waited_ms < READER_WAIT_MS; waited_ms += AGAIN_MS) {
        descriptor = ::open(name.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (descriptor >= 0 || errno != ENXIO)
            break;
        ::poll(nullptr, 0, AGAIN_MS);
        errno = ENXIO;
    }
    if (descriptor >= 0)
        ::fcntl(descriptor, F_SETFL, O_WRONLY);
    else
        reason = errno == ENXIO ? QStringLiteral("nobody reads this pipe; start its reader first")
                                : QString::fromLocal8Bit(std::strerror(errno));
    return descriptor;
}

#else

bool is_named_pipe(const QString&)
{
    return false;
}

int open_named_pipe(const QString&, QString&)
{
    return -1;
}

#endif
