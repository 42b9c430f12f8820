// The real tarnwickctl as a child process. The words of its commands are separated by blanks.
#pragma once

#include "simulated.h"

#include <QJsonObject>
#include <gtest/gtest.h>

struct CtlResult
{
    int exit = -1; // -1 when a signal ended it
    QByteArray out;
    QByteArray err;

    // The one JSON object that the output is; empty when it is none.
    QJsonObject json() const;
};

class Ctl
{
public:
    explicit Ctl(const QString& command, const QByteArray& input = {});
    ~Ctl();

    // True once stderr has shown the text.
    bool says(const QByteArray& text);
    void raise(int signal);
    CtlResult wait();

private:
    QProcess process;
    CtlResult result;
};

CtlResult run_ctl(const QString& command, const QByteArray& input = {});
// What it prints with --json.
QJsonObject ctl_json(const QString& command);

// A file of so many bytes of all values, by its path.
QString firmware_file(const Sandbox& sandbox, const QString& name, int size);
