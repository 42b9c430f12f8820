// The real tarnwickctl as a child process. The words of its commands are separated by blanks.
#pragma once

#include "pty.h"
#include "simulated.h"

#include <QJsonDocument>
#include <QJsonObject>

struct CtlResult
{
    int exit = -1; // also when a signal has ended it
    QByteArray out;
    QByteArray err;

    // The one JSON object that the output is; empty when it is none.
    QJsonObject json() const
    {
        const QJsonDocument document = QJsonDocument::fromJson(out);
        EXPECT_TRUE(document.isObject()) << out.toStdString();
        return document.object();
    }
};

struct Ctl : Program
{
    explicit Ctl(const QString& command, const QByteArray& input = {})
        : Program(TARNWICKCTL, command.split(' ', Qt::SkipEmptyParts), input)
    {
    }
    CtlResult result()
    {
        const int exit = wait();
        return {exit, out, err};
    }
};

inline CtlResult run_ctl(const QString& command, const QByteArray& input = {})
{
    return Ctl(command, input).result();
}

// What it prints with --json.
inline QJsonObject ctl_json(const QString& command)
{
    return run_ctl(command + " --json").json();
}

// A tarnwickctl with a person at its terminal, who sees stderr.
struct CtlOnTerminal : QProcess
{
    explicit CtlOnTerminal(const QString& command)
    {
        setStandardInputFile(terminal.device());
        setStandardErrorFile(terminal.device());
        start(TARNWICKCTL, command.split(' '));
    }
    const QByteArray& screen() { return seen += terminal.read_now(); }

    Pty terminal;
    QByteArray seen;
};
