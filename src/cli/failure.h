// Why a command ends early. Thrown by the commands and what they call, caught in one place.
#pragma once

#include "cli/exitcode.h"

#include <QJsonObject>
#include <QString>

struct Failure
{
    ExitCode code;
    QString what;                    // what happened, to what
    QString advice;                  // what to do next; may be empty
    QJsonObject partial_result = {}; // what was found before
};

inline Failure usage_failure(const QString& what, const QString& advice = {})
{
    return {ExitCode::Usage, what, advice};
}
