// One run of a command: its arguments and options, and where its words go.
#pragma once

#include "cli/command.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/interrupts.h"

#include <QCommandLineParser>
#include <QStringList>
#include <cstdint>

// What doesn't fit throws a Failure of usage.
class Invocation
{
public:
    // Everything but `arguments` outlives it.
    Invocation(const Command& command, const QCommandLineParser& parser, QStringList arguments,
               Console& console, Interrupts& interrupts);

    const QString& command_name() const { return command.name; }
    int argument_count() const { return int(arguments.size()); }
    QString argument(int index, const QString& name) const;
    QStringList arguments_from(int index) const { return arguments.mid(index); }
    void expect_at_most(int count) const;

    bool takes_frame() const;
    bool has(const char* option) const;
    QString text(const char* option) const;
    QStringList texts(const char* option) const; // of an option given several times
    QStringList given() const;                   // the options in their order, each time
    std::int64_t number(const char* option, std::int64_t least, std::int64_t most) const;

    // The bytes that the command works on: --hex or --text; else the file that the argument names;
    // else standard input. Throws Failure when they can't be read.
    QByteArray payload(int argument) const;

    // Asks a person before something that can't be taken back. Throws Failure unless the answer is
    // yes. Where stdin or stderr is no terminal nobody is asked, and that is a yes, as scripts mean
    // what they say.
    void confirm(const QString& question) const;

    Console& console;
    Interrupts& interrupts;
    // What the program ends with when the command returns. One that has done its work but lost
    // something beside it changes this.
    ExitCode ending = ExitCode::Done;

private:
    const Command& command;
    const QCommandLineParser& parser;
    QStringList arguments;
};

// For commands that call payload().
QList<QCommandLineOption> payload_options();
