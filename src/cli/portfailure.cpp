#include "cli/portfailure.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPort>
#include <algorithm>

namespace {
const char LIST_ADVICE[] = "`tarnwickctl ports` lists the ports of this machine.";

bool has_open(const QFileInfoList& files, const QString& device)
{
    return std::any_of(files.cbegin(), files.cend(),
                       [&](const QFileInfo& file) { return file.symLinkTarget() == device; });
}

// The other programs that have the device open, as in "picocom (4711)". Sees those that this user
// may look at, on systems with a /proc. Who made a pseudo-terminal has both sides open, and isn't
// meant.
QStringList holders(const QString& port)
{
    const QString device = QFileInfo(port).canonicalFilePath();
    QStringList found;
    for (const QString& pid : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        const QDir process("/proc/" + pid);
        const auto files = QDir(process.filePath("fd")).entryInfoList(QDir::Files | QDir::System);
        const bool maker = has_open(files, "/dev/ptmx") || has_open(files, "/dev/pts/ptmx");
        QFile name(process.filePath("comm"));
        if (!maker && has_open(files, device) && name.open(QIODevice::ReadOnly))
            found.append(QString::fromLocal8Bit(name.readAll()).trimmed() + " (" + pid + ')');
    }
    return found;
}

QString busy_advice(const QString& port)
{
    const QStringList programs = holders(port);
    return programs.isEmpty()
               ? QString("Another program holds it: end that program, or take another port.")
               : "It is open in " + programs.join(", ") + ": end that, or take another port.";
}
} // namespace

Failure port_failure(const QString& port, ulong error, const QString& reason)
{
    const QFileInfo file(port);
    const QString what = "the port " + port + " can't be opened: ";
    if (port.startsWith('/') ? !file.exists() : !port.startsWith("COM"))
        return {ExitCode::Link, what + "there is no such port", LIST_ADVICE};
    if (file.isFile() || file.isDir())
        return {ExitCode::Link, what + "it is no serial port", LIST_ADVICE};
    if (port.startsWith('/') && !(file.isReadable() && file.isWritable()))
        return {
            ExitCode::Link, what + "permission denied",
            "Ports belong to a group, mostly dialout: `sudo adduser $USER dialout`, then log in "
            "again."};
    // The rights are there, so that somebody else has it.
    if (error == QSerialPort::PermissionError)
        return {ExitCode::Link, what + reason, busy_advice(port)};
    if (error == QSerialPort::UnsupportedOperationError)
        return {ExitCode::Link, what + reason,
                "It may be no serial port, or need another rate or format in --link."};
    return {ExitCode::Link, what + reason,
            "Is the adapter all right, and does the port belong to a device? Plug the adapter in "
            "again, or take another port."};
}
