// Asks a person before something that can't be taken back.
#pragma once

#include "cli/console.h"
#include "cli/interrupts.h"

// Throws Failure unless the answer is yes. Where stdin or stderr is no terminal nobody is asked,
// and that is a yes: scripts mean what they say.
void confirm(const QString& question, Console& console, const Interrupts& interrupts);
