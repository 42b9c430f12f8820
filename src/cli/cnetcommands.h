// What the commands of the cnet family share.
#pragma once

#include "cli/stackoptions.h"
#include "cli/usage.h"
#include "tools/cnetcfg.h"

Command cnet_search_command();
