// What the program knows of each of its commands.
#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>

class Invocation;

// What a command talks to, and with it which options it takes.
enum class Needs { Nothing, Link, StackOrNothing, Stack };

struct Command
{
    QString name;        // "ports", "cnet search"
    QString arguments;   // after the name in the usage line
    QString summary;     // one line for the list of commands
    QString description; // for a newcomer, with examples
    QList<QCommandLineOption> options;
    Needs needs = Needs::Nothing;
    void (*run)(Invocation&) = nullptr; // throws Failure
};

// Each file of commands gives its own.
QList<Command> ports_commands();
QList<Command> upgrade_commands();
QList<Command> cnet_commands();
QList<Command> cnet_search_commands();
QList<Command> dorv_commands();
QList<Command> dorv_module_commands();
QList<Command> frame_commands();
QList<Command> checksum_commands();

// All options that a command takes: its own, the link's if it uses one, and those of every command.
QList<QCommandLineOption> options_of(const Command& command);

// What --help shows.
QString overview(const QList<Command>& commands);
QString family_help(const QList<Command>& commands, const QString& family);
QString command_help(const Command& command);
QString stack_help();
