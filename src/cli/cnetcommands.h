// What the commands of the cnet family share.
#pragma once

#include "cnetcfg.h"
#include "stackoptions.h"
#include "usage.h"

Command cnet_search_command();
