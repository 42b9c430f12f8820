// What a command exchanges with its device, recorded into a capture.
#pragma once

#include "capture/capturewriter.h"
#include "cli/console.h"
#include "cli/invocation.h"
#include "links/qlink.h"

struct LinkDescription;

// What a capture of the invocation says of itself, and of the port: its name, and --link.
PcapngSection record_section(const Invocation& invocation);
PcapngInterface record_port(const Invocation& invocation, const LinkDescription& link,
                            const QString& name);
