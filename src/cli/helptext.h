// What --help shows.
#pragma once

#include "cli/command.h"

// All options that a command takes: its own, the link's if it uses one, and those of every command.
QList<QCommandLineOption> options_of(const Command& command);

QString overview(const QList<Command>& commands);
QString family_help(const QList<Command>& commands, const QString& family);
QString command_help(const Command& command);
QString stack_help();
