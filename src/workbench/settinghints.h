// What each setting of a Dorv module is, and in which unit, for the window.
#pragma once

#include "tools/dorvsettings.h"

#include <QCoreApplication>

struct SettingHints
{
    Q_DECLARE_TR_FUNCTIONS(SettingHints)
public:
    static QString hint(const DorvSetting& setting); // one sentence
    static QString unit(const DorvSetting& setting); // empty where there is none, or several
};
