#include "ctl.h"

#include <QJsonDocument>
#include <csignal>

QJsonObject CtlResult::json() const
{
    const QJsonDocument document = QJsonDocument::fromJson(out);
    EXPECT_TRUE(document.isObject()) << out.toStdString();
    return document.object();
}

Ctl::Ctl(const QString& command, const QByteArray& input)
{
    process.start(TARNWICKCTL, command.split(' ', Qt::SkipEmptyParts));
    process.waitForStarted();
    process.write(input);
    process.closeWriteChannel();
}

Ctl::~Ctl()
{
    process.kill();
    process.waitForFinished();
}

bool Ctl::says(const QByteArray& text)
{
    return wait_until([&] {
        result.err += process.readAllStandardError();
        return result.err.contains(text);
    });
}

void Ctl::raise(int signal)
{
    ::kill(pid_t(process.processId()), signal);
}

CtlResult Ctl::wait()
{
    constexpr int LONGEST_RUN_MS = 120000;
    EXPECT_TRUE(
        wait_until([&] { return process.state() == QProcess::NotRunning; }, LONGEST_RUN_MS));
    result.exit = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out += process.readAllStandardOutput();
    result.err += process.readAllStandardError();
    return result;
}

CtlResult run_ctl(const QString& command, const QByteArray& input)
{
    return Ctl(command, input).wait();
}

QJsonObject ctl_json(const QString& command)
{
    return run_ctl(command + " --json").json();
}

QString firmware_file(const Sandbox& sandbox, const QString& name, int size)
{
    file_write(sandbox.path(name), random_bytes(size, quint64(size)));
    return sandbox.path(name);
}
