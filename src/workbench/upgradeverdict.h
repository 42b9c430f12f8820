// How an upgrade has ended, in one sentence, and what to do next.
#pragma once

#include "workbench/upgraderun.h"

#include <QCoreApplication>

struct UpgradeVerdict
{
    Q_DECLARE_TR_FUNCTIONS(UpgradeVerdict)
public:
    bool good = false;
    QString what;
    QString next; // may be empty

    QString text() const;
};

UpgradeVerdict upgrade_verdict(const UpgradeReport& report, const QString& file_name,
                               const UpgradeSettings& settings);
