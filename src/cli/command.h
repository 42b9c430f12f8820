// What the program knows of each of its commands, and what a command is given to run.
#pragma once

#include "cli/console.h"
#include "cli/interrupts.h"

#include <QCommandLineParser>
#include <QStringList>

class Invocation;

// What a command talks to, and with it which options it takes.
enum class Needs { Nothing, Link, StackOrNothing, Stack };

struct Command
{
    QString name;        // "ports", "cnet search"
    QString arguments;   // behind the name in the usage line
    QString summary;     // one line for the list of commands
    QString description; // what a newcomer wants to know, with examples
    QList<QCommandLineOption> options;
    Needs needs;
    void (*run)(Invocation&); // throws Failure
};

// The commands of each family, in the order in which help lists them.
QList<Command> ports_commands();
QList<Command> upgrade_commands();
QList<Command> cnet_commands();
QList<Command> dorv_commands();
QList<Command> frame_commands();
QList<Command> checksum_commands();
QList<Command> all_commands();

// One run of a command: its arguments and options, and where its words go.
class Invocation
{
public:
    Invocation(const Command& command, const QCommandLineParser& parser, QStringList arguments,
               Console& console, Interrupts& interrupts);

    // What doesn't fit throws a Failure of usage.
    int argument_count() const { return int(arguments.size()); }
    QString argument(int index, const QString& name) const;
    QStringList arguments_from(int index) const { return arguments.mid(index); }
    void expect_at_most(int count) const;

    bool takes_frame() const;
    bool has(const char* option) const;
    QString text(const char* option) const;
    QStringList texts(const char* option) const; // of an option given several times
    qint64 number(const char* option, qint64 least, qint64 most) const;

    Console& console;
    Interrupts& interrupts;

private:
    const Command& command;
    const QCommandLineParser& parser;
    QStringList arguments;
};
