// The real tarnwickctl as a child process. The words of its commands are separated by blanks.
#pragma once

#include "pty.h"
#include "simulated.h"

#include <QJsonDocument>
#include <QJsonObject>

struct Ctl : Program
{
    explicit Ctl(const QString& command, const QByteArray& input = {})
        : Program(TARNWICKCTL, command.split(' ', Qt::SkipEmptyParts), input)
    {
    }
    // The one JSON object that it has printed; empty when it is none.
    QJsonObject json() const
    {
        const QJsonDocument document = QJsonDocument::fromJson(out);
        EXPECT_TRUE(document.isObject()) << out.toStdString();
        return document.object();
    }
};

// One that has ended.
struct CtlRun : Ctl
{
    using Ctl::Ctl;
    const int exit = wait();
};

// What it prints with --json.
inline QJsonObject ctl_json(const QString& command)
{
    return CtlRun(command + " --json").json();
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
