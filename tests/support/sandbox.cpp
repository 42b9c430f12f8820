#include "sandbox.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <stdexcept>

Sandbox::Sandbox()
    : old_working_dir(QDir::currentPath())
    , old_runtime_dir(qgetenv("XDG_RUNTIME_DIR"))
{
    const QString runtime = path("runtime");
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
    QDir().mkpath(ports_folder());
    QDir().mkpath(path("work"));
    QDir::setCurrent(path("work"));
}

Sandbox::~Sandbox()
{
    QDir::setCurrent(old_working_dir);
    if (old_runtime_dir.isNull())
        qunsetenv("XDG_RUNTIME_DIR");
    else
        qputenv("XDG_RUNTIME_DIR", old_runtime_dir);
}

QString Sandbox::path(const QString& name) const
{
    return dir.filePath(name);
}

QString Sandbox::ports_folder() const
{
    return path("runtime/tarnwick/ports");
}

void file_write(const QString& path, const QByteArray& data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush())
        throw std::runtime_error("can't write " + path.toStdString());
    // QSettings takes a file of the same size and time for the one it has read, and the system's
    // clock of files goes by milliseconds.
    static int files = 0;
    file.setFileTime(QDateTime::currentDateTime().addSecs(++files), QFile::FileModificationTime);
}

QByteArray file_content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
