// What the commands of the dorv family share.
#pragma once

#include "cli/dorvsession.h"

QList<Command> dorv_module_commands();
