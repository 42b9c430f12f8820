// A setting's value as one line of text, as files and the table have it: "115200 8 even 1".
#pragma once

#include "tools/dorvsettings.h"

#include <QCoreApplication>
#include <QString>

struct SettingValue
{
    Q_DECLARE_TR_FUNCTIONS(SettingValue)
public:
    // All that the setting takes. Throws TextError.
    static DorvValues parse(const DorvSetting& setting, const QString& line);
    // The same value always gives the same line.
    static QString line(const DorvSetting& setting, const DorvValues& values);
    // What parse gives back as a line, also for the first values alone, as some settings are read.
    // Throws TextError.
    static QString normal(const DorvSetting& setting, const QString& line);
    // Each value with its least and most.
    static QString range(const DorvSetting& setting);
    // A value that was read, whole or in part, agrees with another one.
    static bool begins(const QString& whole, const QString& part);
};
