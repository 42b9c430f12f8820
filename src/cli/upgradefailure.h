// Why a module doesn't hold the file after an upgrade, in the words of the command line.
#pragma once

#include "cli/failure.h"
#include "stack/upgrade.h"

// Of a run that hasn't ended with Upgraded.
Failure upgrade_failure(const UpgradeReport& report, const QString& file,
                        const UpgradeSettings& settings);
