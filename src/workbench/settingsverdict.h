// How a run over settings has ended, in one sentence, and what to do next.
#pragma once

#include "workbench/settingsrun.h"

#include <QCoreApplication>

struct SettingsVerdict
{
    Q_DECLARE_TR_FUNCTIONS(SettingsVerdict)
public:
    bool good = false;
    QString text;
};

SettingsVerdict settings_verdict(const SettingsReport& report);
