#include "cli/failure.h"

#include <algorithm>

QJsonObject error_object(const Failure& failure)
{
    const ExitCodeRow* row =
        std::find_if(std::begin(EXIT_CODES), std::end(EXIT_CODES),
                     [&](const ExitCodeRow& row) { return row.code == failure.code; });
    return {{"exit", int(failure.code)},
            {"name", row->name},
            {"message", failure.what},
            {"advice", failure.advice}};
}
