// A simulator as a child process.
#pragma once

#include "program.h"
#include "sandbox.h"

#include <gtest/gtest.h>

// Starts the simulator and waits for the path of its port, its first line of output.
class Simulated : public Program
{
public:
    // The command's words are separated by blanks.
    explicit Simulated(const QString& command)
        : Program(TARNWICK_SIM, command.split(' ', Qt::SkipEmptyParts))
    {
        wait_until(
            [&] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
        address = QString::fromLocal8Bit(process.readLine()).trimmed();
    }
    // Asks it to end, so that it takes its link with it: a link that remains may lead to somebody
    // else's tty by the time the next simulator looks at it.
    ~Simulated() { end(); }
    int end()
    {
        process.terminate();
        return wait();
    }

    QString address;
};

// A test of programs in a directory of its own.
class ProgramTest : public testing::Test
{
protected:
    Sandbox sandbox;
};
