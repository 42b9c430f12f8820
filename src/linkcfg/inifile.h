// The configuration file, for reading and writing.
#pragma once

#include <QSettings>

// Opens at once where a program that was killed while it stored has left its lock, and finds all
// keys of a file with sections inside one another.
class IniFile : public QSettings
{
public:
    explicit IniFile(const QString& path);
};
