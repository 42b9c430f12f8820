// A simulator as a child process, and a program's side of its port.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <sandbox.h>
#include <unistd.h>
#include <wait.h>

// Starts the simulator and waits for the path of its port, its first line of output.
class Simulated
{
public:
    // The command's words are separated by blanks.
    explicit Simulated(const QString& command)
    {
        process.start(TARNWICK_SIM, command.split(' ', Qt::SkipEmptyParts));
        process.waitForStarted();
        wait_until(
            [&] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
        address = QString::fromLocal8Bit(process.readLine()).trimmed();
    }
    // Asks it to end, so that it takes its link with it: a link that remains may lead to somebody
    // else's tty by the time the next simulator looks at it.
    ~Simulated()
    {
        end();
        process.kill();
        process.waitForFinished();
    }

    // Ends it by SIGTERM; gives its exit code, or -1 when it did not end by itself.
    int end()
    {
        process.terminate();
        return wait_for_exit();
    }
    int wait_for_exit()
    {
        process.waitForFinished(PATIENCE_MS);
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QProcess process;
    QString address;
};

// An open port or socket as a plain descriptor, so that nothing is between test and simulator.
class Wire
{
public:
    explicit Wire(const QString& port); // a path, or 127.0.0.1:port
    ~Wire() { ::close(fd); }
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    // Writes as much as the other side takes now; gives the count.
    int write_some(const QByteArray& bytes);
    // Sends all of the request while it reads what comes, as a terminal program would; ends when
    // the answer has that size, or when nothing has moved for `quiet_ms`.
    QByteArray exchange(const QByteArray& request, int answer_size, int quiet_ms = PATIENCE_MS);
    QByteArray read(int count, int quiet_ms = PATIENCE_MS) { return exchange({}, count, quiet_ms); }

    int fd = -1;
};

// Bytes of all values that differ with the seed.
QByteArray random_bytes(int count, quint64 seed);
