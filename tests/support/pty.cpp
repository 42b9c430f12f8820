#include "pty.h"

#include "wait.h"

#include <QFile>
#include <QString>
#include <fcntl.h>
#include <stdexcept>
#include <stdlib.h>
#include <unistd.h>

Pty::Pty()
{
    master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char name[128];
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, name, sizeof name) != 0)
        throw std::runtime_error("no pseudo-terminal");
    slave_path = QString::fromLocal8Bit(name);
    // Raw from the start, so that bytes written before the port is opened are neither echoed nor
    // changed.
    termios raw = settings();
    cfmakeraw(&raw);
    tcsetattr(master, TCSANOW, &raw);
}

Pty::~Pty()
{
    unlink();
    hang_up();
}

QString Pty::link_into(const QString& folder, const QString& name)
{
    unlink();
    link_path = folder + "/" + name;
    QFile::link(slave_path, link_path);
    return link_path;
}

void Pty::unlink()
{
    if (!link_path.isEmpty())
        QFile::remove(link_path);
    link_path.clear();
}

void Pty::hang_up()
{
    if (master >= 0)
        ::close(master);
    master = -1;
}

bool Pty::write(const QByteArray& data)
{
    // Patience is for a reader that takes nothing, however long the whole takes.
    ssize_t n = 0;
    for (qint64 done = 0; done < data.size(); done += n)
        if (!wait_until([&] {
                n = ::write(master, data.constData() + done, size_t(data.size() - done));
                return n > 0;
            }))
            return false;
    return true;
}

QByteArray Pty::read_now(int most)
{
    QByteArray data(most, Qt::Uninitialized);
    const ssize_t n = ::read(master, data.data(), size_t(most));
    data.resize(n > 0 ? int(n) : 0);
    return data;
}

QByteArray Pty::read(int count, int patience_ms)
{
    QByteArray data;
    wait_until(
        [&] {
            data += read_now();
            return data.size() >= count;
        },
        patience_ms);
    return data;
}

termios Pty::settings() const
{
    termios tio = {};
    tcgetattr(master, &tio);
    return tio;
}
