// The real program on pseudo-terminals: one is its port, another its terminal.
#pragma once

#include "pty.h"
#include "sandbox.h"
#include "wait.h"

#include <QDir>
#include <QProcess>
#include <csignal>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

// The system's <pty.h> has the name of ours.
extern "C" pid_t forkpty(int* master, char* name, const termios* settings, const winsize* size);

class Monitor : public testing::Test
{
protected:
    Monitor()
    {
        qputenv("XDG_DATA_HOME", sandbox.path("data").toLocal8Bit());
        link = port->link_into(sandbox.ports_folder(), "adapter");
    }

    ~Monitor() override
    {
        if (child > 0)
            ::kill(child, SIGKILL);
        exit_code();
        if (terminal >= 0)
            ::close(terminal);
    }

    // With a terminal of its own, until it has the port open.
    void start(const QStringList& options, const QByteArray& open = "is open")
    {
        QStringList words = {TARNWICKCTL, "monitor", "--link", "serial:adapter"};
        words += options;
        QList<QByteArray> texts;
        for (const QString& word : words)
            texts.append(word.toLocal8Bit());
        QVector<char*> arguments;
        for (QByteArray& text : texts)
            arguments.append(text.data());
        arguments.append(nullptr);
        child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execv(arguments[0], arguments.data());
            ::_exit(127);
        }
        ::tcgetattr(terminal, &before);
        EXPECT_TRUE(shows(open)) << screen.constData();
        screen.clear();
    }

    bool shows(const QByteArray& text)
    {
        return wait_until([&] {
            char bytes[4096];
            pollfd ready = {terminal, POLLIN, 0};
            if (::poll(&ready, 1, 0) == 1) {
                const ssize_t count = ::read(terminal, bytes, sizeof bytes);
                screen.append(bytes, int(std::max(ssize_t(0), count)));
            }
            return screen.contains(text);
        });
    }

    void type(const QByteArray& keys)
    {
        EXPECT_EQ(::write(terminal, keys.constData(), std::size_t(keys.size())), keys.size());
    }

    int exit_code()
    {
        int status = -1;
        if (child > 0 && !wait_until([&] { return ::waitpid(child, &status, WNOHANG) != 0; })) {
            ADD_FAILURE() << "the program doesn't end; it shows " << screen.constData();
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
        }
        child = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    bool terminal_is_restored() const
    {
        termios now = {};
        return ::tcgetattr(terminal, &now) == 0 && now.c_lflag == before.c_lflag &&
               now.c_iflag == before.c_iflag;
    }

    // As in a script: no terminal anywhere.
    int run(const QStringList& options, const QByteArray& input = {})
    {
        QProcess process;
        process.start(TARNWICKCTL, QStringList{"monitor", "--link", "serial:adapter"} + options);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(wait_until([&] {
            const QByteArray came = port->read_now();
            wire += came;
            if (echoes && !came.isEmpty())
                port->write(came);
            return process.state() == QProcess::NotRunning;
        }));
        out = process.readAllStandardOutput();
        err = process.readAllStandardError();
        return process.exitCode();
    }

    Sandbox sandbox;
    std::unique_ptr<Pty> port = std::make_unique<Pty>();
    QString link;
    pid_t child = -1;
    int terminal = -1;
    termios before = {};
    QByteArray screen;
    bool echoes = true;
    QByteArray wire; // what the program sent
    QByteArray out;
    QByteArray err;
};
