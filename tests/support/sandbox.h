// A directory of the test's own: its working directory, and its folder of virtual ports.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

class Sandbox
{
public:
    Sandbox()
    {
        QDir().mkpath(ports_folder());
        QDir().mkpath(path("work"));
        QDir::setCurrent(path("work"));
        const QString runtime = path("runtime");
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    }
    ~Sandbox()
    {
        QDir::setCurrent(old_working_dir);
        qputenv("XDG_RUNTIME_DIR", old_runtime_dir);
    }

    // Absolute path of a name inside the directory; "work" is the current directory.
    QString path(const QString& name) const { return dir.filePath(name); }
    // The folder whose entries are the virtual ports; exists from construction.
    QString ports_folder() const { return path("runtime/tarnwick/ports"); }

private:
    const QTemporaryDir dir;
    const QString old_working_dir = QDir::currentPath();
    const QByteArray old_runtime_dir = qgetenv("XDG_RUNTIME_DIR");
};

inline void file_write(const QString& path, const QByteArray& data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush())
        throw std::runtime_error("can't write " + path.toStdString());
    // QSettings takes a file of the same size and time for the one it has read, and the system's
    // clock of files goes by milliseconds.
    static int files = 0;
    file.setFileTime(QDateTime::currentDateTime().addSecs(++files), QFile::FileModificationTime);
}

// Empty also when there is no such file.
inline QByteArray file_content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
