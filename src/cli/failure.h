// Why a command ends early. Thrown by the commands and what they call, caught in one place.
#pragma once

#include "exitcode.h"

#include <QString>

struct Failure
{
    ExitCode code;
    QString what;   // what happened, to what
    QString advice; // what to do next; may be empty
};

inline Failure usage_failure(const QString& what, const QString& advice = {})
{
    return {ExitCode::Usage, what, advice};
}
