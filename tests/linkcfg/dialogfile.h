// The INI file that a dialog reads and leaves behind, to the byte.
#pragma once

#include "sandbox.h"

#include <QFile>
#include <string>

class DialogFile
{
public:
    QString path() const { return sandbox.path("dialog.ini"); }
    const Sandbox& box() const { return sandbox; }

    void write(const std::string& text) const
    {
        QFile file(path());
        if (file.open(QIODevice::WriteOnly))
            file.write(text.data(), qint64(text.size()));
    }

    // Empty also when there is no such file.
    std::string text() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    }

private:
    Sandbox sandbox;
};
