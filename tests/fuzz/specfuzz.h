// What must hold of every mistake in a text that a user typed.
#pragma once

#include "fuzzing.h"
#include "typedtext.h"

// What parse(text) returns; nothing for a mistake, whose place is in the text or right after it.
template <typename Parse> auto parsed(const QString& text, Parse parse)
{
    std::optional<decltype(parse(text))> value;
    try {
        value = parse(text);
    } catch (const TextError& error) {
        const int size = int(text.size());
        require(!error.message.isEmpty() && error.column >= 0 && error.length >= 1);
        require(error.column <= size &&
                error.column + error.length <= qMax(size, error.column + 1));
        require(pointed_at(text, error).contains('^'));
    }
    return value;
}
