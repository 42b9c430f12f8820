// What must hold of every mistake in a text that a user wrote.
#pragma once

#include "fuzzing.h"
#include "spectext.h"

// The place lies in the text, or just behind it.
inline void require_place(const QString& text, const SpecError& error)
{
    const int size = int(text.size());
    require(!error.message.isEmpty() && error.column >= 0 && error.length >= 1);
    require(error.column <= size && error.column + error.length <= qMax(size, error.column + 1));
    require(pointed_at(text, error).contains('^'));
}

template <typename Value> bool holds(const QString& text, const Parsed<Value>& parsed)
{
    if (parsed.error)
        require_place(text, *parsed.error);
    return !parsed.error;
}
