// The configuration file, for reading and writing.
#pragma once

#include <QSettings>

// Opens at once where a program that was killed while it stored has left its lock.
class IniFile : public QSettings
{
public:
    explicit IniFile(const QString& path);
};
