// What a text from the command line stands for, or a failure that points at its mistake.
#pragma once

#include "cli/failure.h"
#include "cli/spectext.h"

template <typename Value>
Value parsed_or_usage(const QString& name, const QString& text, const Parsed<Value>& parsed,
                      const QString& advice = {})
{
    if (parsed.error)
        throw usage_failure(
            name + ": " + parsed.error->message + '\n' + pointed_at(text, *parsed.error), advice);
    return parsed.value;
}
