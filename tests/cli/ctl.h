// The real tarnwickctl as a child process.
#pragma once

#include "simulated.h"

#include <gtest/gtest.h>

#include <QJsonObject>

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
    explicit Ctl(const QStringList& arguments, const QByteArray& input = {});
    ~Ctl();

    // True once stderr has shown the text.
    bool says(const QByteArray& text);
    void raise(int signal);
    CtlResult wait();

private:
    QProcess process;
    CtlResult result;
};

CtlResult run_ctl(const QStringList& arguments, const QByteArray& input = {});

// A file of so many bytes of all values, by its path.
QString firmware_file(const Sandbox& sandbox, const QString& name, int size);
QByteArray content_of(const QString& path);
