#include "command.h"

QList<Command> all_commands()
{
    return ports_commands() + frame_commands() + checksum_commands();
}
