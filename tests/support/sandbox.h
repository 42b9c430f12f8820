// A directory of the test's own: its working directory, and its folder of virtual ports.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

class Sandbox
{
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    // Absolute path of a name inside the directory; "work" is the current directory.
    QString path(const QString& name) const;
    // The folder whose entries are the virtual ports; exists from construction.
    QString ports_folder() const;

private:
    QTemporaryDir dir;
    QString old_working_dir;
    QByteArray old_runtime_dir;
};

void file_write(const QString& path, const QByteArray& data);
// Empty also when there is no such file.
QByteArray file_content(const QString& path);
