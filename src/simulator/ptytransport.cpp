#include "simulator/ptytransport.h"

#include "serialport/qextserialenumerator.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {
[[noreturn]] void fail(const QString& text)
{
    throw std::runtime_error(text.toStdString());
}

QString system_error()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString private_ports_folder()
{
    QString folder = QextSerialEnumerator::virtual_ports_folder();
    if (!QextSerialEnumerator::virtual_ports_folder_make())
        fail(QStringLiteral("the folder %1 can't be made, or isn't yours alone to write to; "
                            "chmod go-w takes that right from others")
                 .arg(folder));
    return folder;
}
} // namespace

PtyTransport::PtyTransport(const QString& name)
{
    if (name.isEmpty() || name.contains('/') || name.startsWith('.'))
        fail(
            QStringLiteral("\"%1\" can't be the name of a port: give a plain file name").arg(name));
    link_path = private_ports_folder() + "/" + name;
    open_tty();
    make_link();
}

PtyTransport::~PtyTransport()
{
    remove_link();
}

QByteArray PtyTransport::address() const
{
    return QFile::encodeName(link_path);
}

std::vector<pollfd> PtyTransport::watched(bool reading, bool writing) const
{
    std::vector<pollfd> fds = {{notify.number(), POLLIN, 0}};
    const short events = short((reading ? POLLIN : 0) | (writing ? POLLOUT : 0));
    if (events)
        fds.push_back({master.number(), events, 0});
    return fds;
}

void PtyTransport::update()
{
    alignas(inotify_event) char buffer[4096];
    bool last_one_left = false;
    for (ssize_t size; (size = ::read(notify.number(), buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            users += event->mask & IN_OPEN ? 1 : 0;
            users -= event->mask & IN_CLOSE ? 1 : 0;
            last_one_left |= users == 0;
            at += ssize_t(sizeof(inotify_event) + event->len);
        }
    }
    if (last_one_left)
        tcflush(own_slave.number(), TCIFLUSH);
}

bool PtyTransport::connected() const
{
    return users > 0;
}

QByteArray PtyTransport::read(int most)
{
    QByteArray bytes(most, Qt::Uninitialized);
    const ssize_t count = ::read(master.number(), bytes.data(), size_t(most));
    bytes.truncate(count > 0 ? int(count) : 0);
    // The one who wrote these bytes opened the port before; that must be known before they are
    // answered.
    if (count > 0)
        update();
    return bytes;
}

int PtyTransport::write(const QByteArray& bytes)
{
    const ssize_t count = ::write(master.number(), bytes.constData(), size_t(bytes.size()));
    return count > 0 ? int(count) : 0;
}

void PtyTransport::cut()
{
    remove_link();
    for (FileDescriptor* descriptor : {&notify, &own_slave, &master})
        descriptor->close();
    open_tty();
    make_link();
}

void PtyTransport::open_tty()
{
    master = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    const int pty = master.number();
    char name[128];
    if (!master.is_open() || grantpt(pty) != 0 || unlockpt(pty) != 0 ||
        ptsname_r(pty, name, sizeof name) != 0)
        fail(QStringLiteral("no pseudo-terminal: %1").arg(system_error()));
    tty_path = QString::fromLocal8Bit(name);
    own_slave = FileDescriptor(::open(name, O_RDONLY | O_NOCTTY | O_CLOEXEC));
    termios raw = {};
    if (!own_slave.is_open() || tcgetattr(own_slave.number(), &raw) != 0)
        fail(QStringLiteral("can't open %1: %2").arg(tty_path, system_error()));
    cfmakeraw(&raw);
    tcsetattr(own_slave.number(), TCSANOW, &raw);
    notify = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!notify.is_open() || ::inotify_add_watch(notify.number(), name, IN_OPEN | IN_CLOSE) < 0)
        fail(QStringLiteral("can't watch %1: %2").arg(tty_path, system_error()));
    users = 0;
}

// A link that leads nowhere was left by a simulator that could not clean up. One that leads to a
// port is in use, unless its number has come round to this very tty.
void PtyTransport::make_link()
{
    const QByteArray link = QFile::encodeName(link_path);
    const QByteArray tty = QFile::encodeName(tty_path);
    struct stat entry = {};
    if (::lstat(link.constData(), &entry) == 0) {
        const bool our_number = QFile::symLinkTarget(link_path) == tty_path;
        if (!S_ISLNK(entry.st_mode) || (QFileInfo::exists(link_path) && !our_number))
            fail(QStringLiteral("%1 is in use; end the simulator that made it, or choose another "
                                "name with --name")
                     .arg(link_path));
        ::unlink(link.constData());
    }
    if (::symlink(tty.constData(), link.constData()) != 0)
        fail(QStringLiteral("can't make the link %1: %2").arg(link_path, system_error()));
}

void PtyTransport::remove_link()
{
    if (QFile::symLinkTarget(link_path) == tty_path)
        QFile::remove(link_path);
}
