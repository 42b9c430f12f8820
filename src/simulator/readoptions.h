// From the values of a command line to the options of a device. All throw OptionMistake.
#pragma once

#include "simulator/options.h"
#include "simulator/optionvalues.h"

// The options of every device, which those of one refer to.
void read_common(const OptionValues& values, Options& options);

void read_talk(const OptionValues& values, Options& options);
void read_boot(const OptionValues& values, Options& options);
void read_cnet(const OptionValues& values, Options& options);
void read_dorv(const OptionValues& values, Options& options);
void read_replay(const OptionValues& values, Options& options);
void read_answer(const OptionValues& values, Options& options);
