#include "serialport/portdetails.h"

#include "serialport/tty.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <optional>
#ifdef Q_OS_LINUX
#include <sys/stat.h>
#include <sys/sysmacros.h>
#endif

namespace {
QString device_of(const QString& port_name)
{
    return QFileInfo(tty_device_path(port_name)).canonicalFilePath();
}

QString file_text(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()).trimmed()
                                          : QString();
}

QStringList links_to(const QString& device, const QString& folder)
{
    QStringList names;
    for (const QFileInfo& link : QDir(folder).entryInfoList(QDir::Files | QDir::System))
        if (!device.isEmpty() && link.canonicalFilePath() == device)
            names.append(link.fileName());
    return names;
}

// The folder of the USB device that this one is a part of; empty for others.
QString usb_folder(const QString& device_folder, const QString& root)
{
    const QString top = QFileInfo(root).canonicalFilePath();
    QString folder = QFileInfo(device_folder).canonicalFilePath();
    while (folder.size() > top.size() && !QFileInfo::exists(folder + "/idVendor"))
        folder = QFileInfo(folder).path();
    return folder.size() > top.size() ? folder : QString();
}

QString usb_id_of(const QextPortInfo& port)
{
    if (port.vendorID == 0 && port.productID == 0)
        return {};
    return QStringLiteral("%1:%2")
        .arg(port.vendorID, 4, 16, QChar('0'))
        .arg(port.productID, 4, 16, QChar('0'));
}

bool has_open(const QFileInfoList& files, const QString& device)
{
    return std::any_of(files.cbegin(), files.cend(),
                       [&](const QFileInfo& file) { return file.symLinkTarget() == device; });
}

// How /proc/locks names a file: major and minor number of its file system, and its own.
QString lock_name(const QString& device)
{
#ifdef Q_OS_LINUX
    struct stat about = {};
    if (::stat(QFile::encodeName(device).constData(), &about) == 0)
        return QStringLiteral("%1:%2:%3")
            .arg(major(about.st_dev), 2, 16, QChar('0'))
            .arg(minor(about.st_dev), 2, 16, QChar('0'))
            .arg(about.st_ino);
#else
    Q_UNUSED(device)
#endif
    return {};
}

// A line is "1: FLOCK  ADVISORY  WRITE 4711 00:05:105 0 EOF"; one that waits has an arrow after the
// number.
QVector<qint64> lockers(const QString& device, const QString& proc)
{
    QVector<qint64> pids;
    const QString name = lock_name(device);
    for (const QString& line : file_text(proc + "/locks").split('\n')) {
        const QStringList words = line.simplified().split(' ');
        if (words.value(1) == "FLOCK" && !name.isEmpty() && words.value(5) == name)
            pids.append(words[4].toLongLong());
    }
    return pids;
}

bool cuts_number(const QString& text, int at, int size)
{
    const auto digits = [&](int left) {
        return left >= 0 && left + 1 < text.size() && text[left].isDigit() &&
               text[left + 1].isDigit();
    };
    return digits(at - 1) || digits(at + size - 1);
}

bool has_part(const QString& text, const QString& part)
{
    for (int at = text.indexOf(part, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(part, at + 1, Qt::CaseInsensitive))
        if (!cuts_number(text, at, int(part.size())))
            return true;
    return false;
}
} // namespace

PortIdentity port_identity(const QextPortInfo& port, const PortRoots& roots)
{
    PortIdentity identity;
    const QString device = device_of(port.portName);
    identity.stable_names = links_to(device, roots.by_id);
    identity.usb_id = usb_id_of(port);
    if (device.isEmpty())
        return identity;
    const QString folder = roots.sys + "/class/tty/" + QFileInfo(device).fileName() + "/device";
    identity.driver = QFileInfo(QFileInfo(folder + "/driver").canonicalFilePath()).fileName();
    const QString usb = usb_folder(folder, roots.sys);
    if (usb.isEmpty())
        return identity;
    identity.usb_id = file_text(usb + "/idVendor") + ':' + file_text(usb + "/idProduct");
    identity.serial_number = file_text(usb + "/serial");
    return identity;
}

QVector<PortHolder> port_holders(const QString& port_name, const PortRoots& roots)
{
    QVector<PortHolder> found;
    const QString device = device_of(port_name);
    if (device.isEmpty())
        return found;
    const QVector<qint64> locking = lockers(device, roots.proc);
    for (const QString& entry : QDir(roots.proc).entryList({"[0-9]*"}, QDir::Dirs)) {
        const qint64 pid = entry.toLongLong();
        const QString process = roots.proc + '/' + entry;
        const auto files = QDir(process + "/fd").entryInfoList(QDir::Files | QDir::System);
        const bool maker = has_open(files, "/dev/ptmx") || has_open(files, "/dev/pts/ptmx");
        const bool locked = locking.contains(pid);
        if (locked || (!maker && has_open(files, device)))
            found.append({pid, file_text(process + "/comm"), locked});
    }
    return found;
}

QString shown(const PortHolder& holder)
{
    return QStringLiteral("%1 (%2)").arg(holder.program).arg(holder.pid);
}

PortBar port_bar(const QString& port_name, const QVector<PortHolder>& holders)
{
    const QFileInfo file(tty_device_path(port_name));
    const bool is_path = file.filePath().contains('/');
    if (is_path ? !file.exists() : !port_name.startsWith("COM"))
        return PortBar::Missing;
    if (file.isFile() || file.isDir())
        return PortBar::NoPort;
    if (is_path && !(file.isReadable() && file.isWritable()))
        return PortBar::Rights;
    const bool locked = std::any_of(holders.cbegin(), holders.cend(),
                                    [](const PortHolder& holder) { return holder.locked; });
    return locked ? PortBar::Locked : PortBar::None;
}

QString port_group(const QString& port_name)
{
    const QFileInfo device(device_of(port_name));
    return device.permission(QFileDevice::ReadGroup | QFileDevice::WriteGroup) ? device.group()
                                                                               : QString();
}

QStringList ports_named(const QString& text, const QList<QextPortInfo>& ports,
                        const PortRoots& roots)
{
    for (const QextPortInfo& port : ports)
        if (port.portName == text || port.portName.endsWith('/' + text))
            return {port.portName};
    QStringList exact;
    QStringList found;
    for (const QextPortInfo& port : ports) {
        const PortIdentity identity = port_identity(port, roots);
        if (identity.stable_names.contains(text))
            exact.append(port.portName);
        const QStringList texts =
            QStringList{port.portName,   port.friendName,        port.enumName,
                        identity.usb_id, identity.serial_number, identity.driver} +
            identity.stable_names;
        if (std::any_of(texts.cbegin(), texts.cend(),
                        [&](const QString& one) { return has_part(one, text); }))
            found.append(port.portName);
    }
    return exact.isEmpty() ? found : exact;
}
