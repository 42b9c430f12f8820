// A file of settings, a line each: "freq 470300000", as `tarnwickctl dorv list --link` prints them.
// Empty lines, and those that begin with #, say nothing.
#pragma once

#include "tools/dorvsettings.h"

#include <QCoreApplication>
#include <QVector>

struct SettingLine
{
    const DorvSetting* setting;
    QString value; // as SettingValue has it
};

struct SettingsFile
{
    Q_DECLARE_TR_FUNCTIONS(SettingsFile)
public:
    static constexpr int LARGEST = 64 * 1024; // bytes; all settings take some two thousand

    QVector<SettingLine> lines;
    QString problem; // one sentence; empty when all of the file is in `lines`

    static SettingsFile read(const QString& path);
    static SettingsFile parse(const QString& name, const QString& text);
    // Empty, or one sentence.
    QString write(const QString& path) const;
};
