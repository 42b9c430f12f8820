// Arguments of the command line that have a grammar of their own.
#pragma once

#include "cli/failure.h"
#include "stack/typedtext.h"

// What parse(text) returns. When it throws a TextError: throws a Failure of usage that points at
// the mistake. `name` is the option or argument that the text was given for.
template <typename Parse>
auto parse_argument(const QString& name, const QString& text, Parse parse,
                    const QString& advice = {})
{
    try {
        return parse(text);
    } catch (const TextError& error) {
        throw usage_failure(name + ": " + error.message + '\n' + pointed_at(text, error), advice);
    }
}
