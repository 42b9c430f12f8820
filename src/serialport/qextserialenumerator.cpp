#include "serialport/qextserialenumerator.h"

#include "serialport/portwatch.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSerialPortInfo>
#include <QStandardPaths>
#include <algorithm>
#include <mutex>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
// How soon a removal shows where no folder can be watched.
constexpr int TIMER_INTERVAL_MS = 1000;

// The number after "COM", or -1 for a name of another form.
int com_number(const QString& name)
{
    bool ok = false;
    const int number = name.startsWith("COM") ? name.mid(3).toInt(&ok) : 0;
    return ok ? number : -1;
}
} // namespace

bool port_name_less(const QString& a, const QString& b)
{
    const int a_number = com_number(a);
    const int b_number = com_number(b);
    if (a_number >= 0 && b_number >= 0 && a_number != b_number)
        return a_number < b_number;
    return a < b;
}

namespace {
QextPortInfo hardware_port(const QSerialPortInfo& info)
{
    QextPortInfo port;
#ifdef Q_OS_WIN
    port.portName = info.portName();
#else
    port.portName = info.systemLocation();
#endif
    port.physName = info.systemLocation();
    port.friendName = info.description();
    port.enumName = info.manufacturer();
    port.vendorID = info.vendorIdentifier();
    port.productID = info.productIdentifier();
    return port;
}

QString runtime_folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

#ifdef Q_OS_UNIX

bool is_mine(const QString& folder, mode_t refused)
{
    struct stat about = {};
    return stat(QFile::encodeName(folder).constData(), &about) == 0 && about.st_uid == geteuid() &&
           (about.st_mode & refused) == 0;
}

// Whoever can write into the folder decides where the bytes go. With the usual umask of 002 the
// group can, which is harmless inside a runtime folder that lets nobody else in.
bool only_mine(const QString& folder)
{
    return is_mine(folder, S_IWGRP | S_IWOTH) ||
           (is_mine(folder, S_IWOTH) && is_mine(runtime_folder(), S_IRWXG | S_IRWXO));
}

// Whatever the umask leaves to others.
void make_private(const QString& folder)
{
    ::mkdir(QFile::encodeName(folder).constData(), S_IRWXU);
}

bool leads_to_device(const QString& path)
{
    struct stat about = {};
    return stat(QFile::encodeName(path).constData(), &about) == 0 && S_ISCHR(about.st_mode);
}

#else

bool only_mine(const QString&)
{
    return false;
}

void make_private(const QString&) {}

bool leads_to_device(const QString&)
{
    return false;
}

#endif

void append_virtual_ports(QList<QextPortInfo>& ports)
{
    const QString folder = QextSerialEnumerator::virtual_ports_folder();
    if (!only_mine(folder))
        return;
    const auto entries = QDir(folder).entryInfoList(QDir::Files | QDir::System | QDir::Hidden |
                                                    QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString path = entry.absoluteFilePath();
        if (leads_to_device(path))
            ports.append({path, entry.canonicalFilePath(), entry.fileName(), "virtual", 0, 0});
    }
}

bool is_listed(const QList<QextPortInfo>& ports, const QString& port_name)
{
    return std::any_of(ports.cbegin(), ports.cend(),
                       [&](const QextPortInfo& port) { return port.portName == port_name; });
}

const QextPortInfo* find_port(const QList<QextPortInfo>& ports, const QextPortInfo& port)
{
    const auto same = [&](const QextPortInfo& other) {
        return other.portName == port.portName && other.physName == port.physName;
    };
    const auto found = std::find_if(ports.cbegin(), ports.cend(), same);
    return found == ports.cend() ? nullptr : &*found;
}

// One thread at a time, as Qt asks libudev, which shares a table between threads without a lock.
QList<QSerialPortInfo> hardware_infos()
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    return QSerialPortInfo::availablePorts();
}

bool has_gone(const QString& open_port)
{
    return open_port.startsWith('/') && !leads_to_device(open_port);
}
} // namespace

QextSerialEnumerator::QextSerialEnumerator(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<QextPortInfo>("QextPortInfo");
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, &QextSerialEnumerator::look_at);
    connect(&timer, &QTimer::timeout, this, &QextSerialEnumerator::compare);
}

QextSerialEnumerator::~QextSerialEnumerator() = default;

QList<QextPortInfo> QextSerialEnumerator::getPorts()
{
    QList<QextPortInfo> ports;
    for (const QSerialPortInfo& info : hardware_infos())
        ports.append(hardware_port(info));
    append_virtual_ports(ports);
    std::stable_sort(ports.begin(), ports.end(), [](const QextPortInfo& a, const QextPortInfo& b) {
        return port_name_less(a.portName, b.portName);
    });
    return ports;
}

QString QextSerialEnumerator::virtual_ports_folder()
{
    return runtime_folder() + "/tarnwick/ports";
}

bool QextSerialEnumerator::virtual_ports_folder_make()
{
    const QString folder = virtual_ports_folder();
    make_private(QFileInfo(folder).path());
    make_private(folder);
    return only_mine(folder);
}

void QextSerialEnumerator::setUpNotifications()
{
    known = getPorts();
    // A folder that doesn't exist can't be watched for its first entry.
    virtual_ports_folder_make();
    const PortWatch& ports = PortWatch::instance();
    connect(&ports, &PortWatch::added, this, &QextSerialEnumerator::note_open);
    connect(&ports, &PortWatch::removed, this,
            [this](const QString& port_name) { unlisted.removeAll(port_name); });
    connect(&ports, &PortWatch::lost, this, &QextSerialEnumerator::report_lost);
    connect(&ports, &PortWatch::lost_in_call, this, &QextSerialEnumerator::report_lost,
            Qt::QueuedConnection);
    for (const QString& port_name : ports.open_ports())
        note_open(port_name);
    watch_folders();
}

void QextSerialEnumerator::note_open(const QString& port_name)
{
    if (!is_listed(known, port_name))
        unlisted += port_name;
    watch_folders();
}

void QextSerialEnumerator::watch_folders()
{
#ifdef Q_OS_UNIX
    const QStringList watched = watcher.directories();
    bool complete = true;
    for (const QString& folder : {QString("/dev"), virtual_ports_folder()})
        complete &= watched.contains(folder) || watcher.addPath(folder);
    // The node of a pseudo-terminal goes with it, while a link to it may stay.
    for (const QString& folder : device_folders())
        if (!watched.contains(folder))
            watcher.addPath(folder);
    if (complete) {
        timer.stop();
        return;
    }
    if (!timer.isActive())
        qWarning("no notice of changes in the folders of ports; looking each %d ms",
                 TIMER_INTERVAL_MS);
#endif
    timer.start(TIMER_INTERVAL_MS);
}

// Where the devices of virtual ports are, and of open ports that are in no list.
QSet<QString> QextSerialEnumerator::device_folders() const
{
    QSet<QString> folders;
    for (const QextPortInfo& port : known)
        if (port.enumName == "virtual")
            folders += QFileInfo(port.physName).path();
    for (const QString& port_name : unlisted)
        folders += QFileInfo(QFileInfo(port_name).canonicalFilePath()).path();
    return folders;
}

// Each terminal that opens changes the folder of the pseudo-terminals, and a list of all ports
// takes milliseconds. So a folder of devices only leads to one when a device has gone.
void QextSerialEnumerator::look_at(const QString& folder)
{
    const auto gone = [](const QextPortInfo& port) {
        return port.enumName == "virtual" && !leads_to_device(port.portName);
    };
    if (folder == "/dev" || folder == virtual_ports_folder() ||
        std::any_of(known.cbegin(), known.cend(), gone) ||
        std::any_of(unlisted.cbegin(), unlisted.cend(), has_gone))
        compare();
}

void QextSerialEnumerator::compare()
{
    const QList<QextPortInfo> before = known;
    const QList<QextPortInfo> now = getPorts();
    known = now;
    watch_folders();
    // A receiver may delete this object.
    const QPointer<QextSerialEnumerator> alive(this);
    for (const QextPortInfo& port : before)
        if (alive && !find_port(now, port))
            emit deviceRemoved(port);
    for (const QextPortInfo& port : now)
        if (alive && !find_port(before, port))
            emit deviceDiscovered(port);
    for (const QString& port_name : alive ? QStringList(unlisted) : QStringList())
        if (alive && has_gone(port_name))
            report_lost(port_name);
}

void QextSerialEnumerator::report_lost(const QString& port_name)
{
    QextPortInfo lost = {port_name, port_name, QString(), QString(), 0, 0};
    bool fresh = unlisted.removeAll(port_name) > 0;
    for (int i = known.size() - 1; i >= 0; --i)
        if (known[i].portName == port_name) {
            lost = known.takeAt(i);
            fresh = true;
        }
    // No look at the folders here: a node that is still there for a moment would count as new.
    if (fresh)
        emit deviceRemoved(lost);
}
