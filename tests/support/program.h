// A program as a child process.
#pragma once

#include "wait.h"

#include <QProcess>
#include <csignal>

class Program
{
public:
    Program(const QString& path, const QStringList& arguments, const QByteArray& input = {})
    {
        process.start(path, arguments);
        process.write(input);
        process.closeWriteChannel();
    }
    ~Program()
    {
        process.kill();
        process.waitForFinished();
    }

    // True once stderr has shown the text.
    bool says(const QByteArray& text)
    {
        return wait_until([&] { return (err += process.readAllStandardError()).contains(text); });
    }
    void raise(int signal) { ::kill(pid_t(process.processId()), signal); }
    // Its exit code once it has ended, or -1 when a signal has ended it.
    int wait()
    {
        const auto ended = [&] { return process.state() == QProcess::NotRunning; };
        const bool in_time = wait_until(ended, 10 * PATIENCE_MS);
        out += process.readAllStandardOutput();
        err += process.readAllStandardError();
        return in_time && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QProcess process;
    QByteArray out; // what it has printed, complete after wait()
    QByteArray err;
};
