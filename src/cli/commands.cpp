#include "cli/command.h"

QList<Command> all_commands()
{
    return ports_commands() + upgrade_commands() + cnet_commands() + dorv_commands() +
           frame_commands() + checksum_commands();
}
