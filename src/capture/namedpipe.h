// Named pipes to write to: Wireshark reads a live session from one.
#pragma once

#include <QString>

// False too where the path leads to nothing.
bool is_named_pipe(const QString& path);

// Opens a named pipe for writing. Waits for its reader, but not for ever, as the open of the system
// would, which no signal ends. Returns the descriptor, or -1 with the reason.
int open_named_pipe(const QString& path, QString& reason);
