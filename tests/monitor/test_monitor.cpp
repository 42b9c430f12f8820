// The real program on pseudo-terminals: one is its port, another its terminal.
#include "pty.h"
#include "sandbox.h"
#include "serialport/filedescriptor.h"
#include "wait.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The system's <pty.h> has the name of ours.
extern "C" pid_t forkpty(int* master, char* name, const termios* settings, const winsize* size);

namespace {
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

TEST_F(Monitor, KeysGoOutAsTypedAndCommandsAfterThePrefix)
{
    start({});
    type("AT\r\x03");
    EXPECT_EQ(port->read(4), "AT\r\x03");
    port->write("\x1b[2Jh\xc3");
    port->write("\xa9llo\n");
    EXPECT_TRUE(shows("\\x1b[2Jh\xc3\xa9llo\r\n"));
    type("\x14nA\r");
    EXPECT_EQ(port->read(2), "A\n");
    EXPECT_TRUE(shows("Enter sends lf"));
    type("\x14x"
         "c0 ff:01\r");
    EXPECT_EQ(port->read(3), "\xc0\xff\x01");
    type("\x14x"
         "c0 f\r");
    EXPECT_TRUE(shows("not sent"));
    type("\x14h");
    EXPECT_TRUE(shows("view on"));
    port->write("xy");
    EXPECT_TRUE(shows("78 79"));
    type("\x14t\x14t\x14t\x14"
         "e\x14z\x14i\x14l\x14"
         "d\x14"
         "b\x14?");
    for (const char* text : {"stamps iso", "echo on", "no command", "received", "no control lines",
                             "DTR: ", "break: ", "time stamps: off"})
        EXPECT_TRUE(shows(text)) << text;
    type("\x14q");
    EXPECT_EQ(exit_code(), 0);
    EXPECT_TRUE(terminal_is_restored());
}

TEST_F(Monitor, LinesAreEditedAboveNothingOfWhatComes)
{
    start({"--line", "--send", "first"});
    EXPECT_EQ(port->read(6), "first\r");
    type("helo\x1b[Dl\r");
    EXPECT_EQ(port->read(6), "hello\r");
    type("\x1b[A\x1b[A\r");
    EXPECT_EQ(port->read(6), "first\r");
    type("kept");
    EXPECT_TRUE(shows("> kept"));
    port->write("came");
    EXPECT_TRUE(shows("came\r\n\r\x1b[K> kept"));
    port->write(" on");
    // Up to the end of what came, and the line again below it.
    EXPECT_TRUE(shows("\r\x1b[K\x1b[1A\r\x1b[4C on\r\n\r\x1b[K> kept"));
    port->write("\r"); // the line is not over, and not erased
    EXPECT_TRUE(shows(" on\r\n\r\x1b[K> kept\r\x1b[K\x1b[1A\r\x1b[7C\r\r\n\r\x1b[K> kept"));
    port->write("\tab\b\x1b[2C");
    EXPECT_TRUE(shows("\tab\b\x1b[2C\r\n"));
    port->write("!");
    EXPECT_TRUE(shows("\x1b[1A\r\x1b[11C!"));
    type("\x14/\x10\r");
    EXPECT_EQ(port->read(6), "hello\r");
    const QString strings = sandbox.path("data/tarnwick/monitor-strings");
    QDir().mkpath(QFileInfo(strings).path());
    file_write(strings, "of another session\n");
    ::kill(child, SIGTERM);
    EXPECT_EQ(exit_code(), 130);
    EXPECT_TRUE(terminal_is_restored());
    EXPECT_EQ(file_content(strings), "of another session\nfirst\nhello\n");
}

TEST_F(Monitor, AFileGoesOutWholeAndCanBeStopped)
{
    QByteArray content;
    for (int i = 0; i < 20000; ++i)
        content += QByteArray::number(i) + '\n';
    file_write(sandbox.path("file"), content);
    start({});
    type("\x14s" + sandbox.path("file").toLocal8Bit() + '\r');
    EXPECT_EQ(port->read(int(content.size())), content);
    EXPECT_TRUE(shows("file sent, " + QByteArray::number(content.size()) + " bytes"));
    screen.clear();
    type("\x14s\x10\r"); // the same name again; nobody reads, so that it can't end
    EXPECT_TRUE(shows("Ctrl-C stops"));
    type("\x03");
    EXPECT_TRUE(shows("stopped"));
    screen.clear();
    type("\x14s\x10\r\x03"); // typed ahead
    EXPECT_TRUE(shows("stopped"));
    type("\x14s/none\r");
    EXPECT_TRUE(shows("/none can't be read"));
}

TEST_F(Monitor, ThePortComesBackWithAllThatItSaid)
{
    start({});
    for (int i = 0; i < 10; ++i) {
        if (i % 2 == 0)
            port->unlink();
        port->hang_up();
        port->unlink();
        EXPECT_TRUE(shows("waiting for it")) << i;
        type("lost");
        EXPECT_TRUE(shows("until the port is back"));
        screen.clear();
        port = std::make_unique<Pty>();
        port->link_into(sandbox.ports_folder(), "adapter");
        port->write("token\n");
        EXPECT_TRUE(shows("is back") && shows("token")) << screen.constData();
        screen.clear();
        type("k");
        EXPECT_EQ(port->read(1), "k");
    }
}

TEST_F(Monitor, WaitsAtTheStartOrEndsWithThePort)
{
    port->unlink();
    EXPECT_EQ(run({}), 3);
    EXPECT_TRUE(err.contains("no such port")) << err.constData();
    EXPECT_EQ(run({"--wait", "--for", "0.1"}), 3);
    ASSERT_TRUE(QDir(sandbox.ports_folder()).removeRecursively());
    start({"--wait", "--no-reconnect"}, "waiting for adapter");
    EXPECT_TRUE(QDir().mkpath(sandbox.ports_folder()));
    port->link_into(sandbox.ports_folder(), "adapter");
    ASSERT_TRUE(shows("adapter is open"));
    port->hang_up();
    EXPECT_TRUE(shows("the link is lost"));
    EXPECT_EQ(exit_code(), 3);
    EXPECT_TRUE(terminal_is_restored());
}

TEST_F(Monitor, ScriptsSendWaitAndEndWithACode)
{
    const struct
    {
        QStringList options;
        QByteArray input;
        int code;
        QByteArray sent;
        const char* message;
    } rows[] = {
        {{"--send", "AT", "--until", "AT\\r"}, "", 0, "AT\r", ""},
        {{"--send-hex", "00 ff", "--send", "x\\c", "--until", "x"},
         "",
         0,
         QByteArray("\0\xffx", 3),
         ""},
        {{"--send", "a", "--line-ending", "crlf", "--until", "\\n"}, "", 0, "a\r\n", ""},
        {{"--until", "^two$"}, "one\r\ntwo\r\n", 0, "one\r\ntwo\r\n", ""},
        {{"--until", "two"}, "one\ntwo", 0, "one\ntwo", ""},
        {{"--line-ending", "cr", "--until", "two"}, "one\ntwo", 0, "one\rtwo", ""},
        {{"--send", "user?", "--expect", "user", "--reply", "me", "--expect", "me", "--reply",
          "pass", "--until", "pass"},
         "",
         0,
         "user?\rme\rpass\r",
         ""},
        {{"--send", "a", "--until", "b", "--for", "0.2"}, "", 4, "a\r", "nothing came that fits b"},
        {{"--for", "0.1"}, "", 0, "", ""},
        {{"--frame", "crc16", "--send-hex", "01 02", "--until", "\\x02"},
         "",
         0,
         QByteArray::fromHex("010281e1"),
         ""},
        {{"--frame", "crc16", "--send-hex", "01 02", "--expect", "\\x02", "--reply", "\\x01\\x02"},
         "",
         0,
         QByteArray::fromHex("010281e1010281e1"),
         ""},
        {{"--until", "("}, "", 2, "", "parenthesis"},
        {{"--reply", "x"}, "", 2, "", "no --expect"},
        {{"--send", "\\q"}, "", 2, "", "^~"},
        {{"--rotate", "9x", "--log", "l"}, "", 2, "", "10M"},
        {{"--stamps", "x"}, "", 2, "", "delta"},
        {{"--frame", "crc16", "--char-delay", "1"}, "", 2, "", "frames go out whole"},
        {{"--dtr", "up"}, "", 2, "", "on or off"},
        {{"--for", "x"}, "", 2, "", "seconds"},
        {{"--log", "/none/x"}, "", 6, "", "/none/x"},
        {{"--record", "/none/x"}, "", 6, "", "/none/x"},
        {{"--record", ""}, "", 2, "", "file is missing"},
        {{"--record", "x", "--log", "./x"}, "", 2, "", "the same file"},
        {{"--log", "/dev/full", "--send", "a", "--for", "0.2"}, "", 6, "a\r", "missing in the log"},
    };
    for (const auto& row : rows) {
        wire.clear();
        EXPECT_EQ(run(row.options, row.input), row.code)
            << row.options.join(' ').toStdString() << err.constData();
        EXPECT_EQ(wire, row.sent) << row.options.join(' ').toStdString();
        EXPECT_TRUE(err.contains(row.message)) << err.constData();
    }
}

TEST_F(Monitor, OutputLogAndRecordHoldTheSession)
{
    const QString log = sandbox.path("log-%Y");
    const QString record = sandbox.path("it.pcapng");
    EXPECT_EQ(run({"--json", "--send", "hi", "--until", "hi\\r", "--log", log, "--record", record}),
              0);
    const QList<QByteArray> lines = out.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 3) << out.constData();
    const auto object = [&](int i) { return QJsonDocument::fromJson(lines[i]).object(); };
    EXPECT_TRUE(object(0).contains("event"));
    EXPECT_EQ(object(1)["direction"].toString() + object(1)["hex"].toString(), "out68 69 0d");
    EXPECT_EQ(object(2)["direction"].toString() + object(2)["text"].toString(), "inhi\r");
    EXPECT_GT(object(2)["time_ns"].toDouble(), object(1)["time_ns"].toDouble());
    const QStringList names = QDir(sandbox.path("")).entryList({"log-2*"}, QDir::Files);
    ASSERT_EQ(names.size(), 1);
    EXPECT_EQ(file_content(sandbox.path(names[0])), out);
    EXPECT_GE(file_content(record).count("hi\r"), 2);
}

TEST_F(Monitor, ASlowReaderGetsWhatWasReadAndAStuckOneHoldsUpNoEnd)
{
    const QString pipe = sandbox.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit(), 0600), 0);
    const FileDescriptor reader(::open(pipe.toLocal8Bit(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    const QByteArray sent(1'000'000, 'x');
    for (const bool stuck : {false, true}) {
        const QString record = sandbox.path(stuck ? "stuck" : "slow");
        QProcess process;
        process.setStandardOutputFile(pipe);
        process.start(TARNWICKCTL,
                      {"monitor", "--link", "serial:adapter", "--wait", "--record", record});
        ASSERT_TRUE(port->write(sent));
        ASSERT_TRUE(wait_until([&] { return QFileInfo(record).size() > sent.size(); }));
        process.terminate();
        QByteArray bytes(65536, '\0');
        int count = 0;
        ASSERT_TRUE(wait_until([&] {
            if (stuck)
                process.terminate();
            const bool ended = process.state() == QProcess::NotRunning;
            const auto got = [&] { return ::read(reader.number(), bytes.data(), 65536); };
            for (ssize_t n = stuck ? 0 : got(); n > 0; n = got())
                count += int(n);
            return ended;
        }));
        EXPECT_EQ(count, stuck ? 0 : sent.size());
    }
}

TEST_F(Monitor, SaysWhatADeviceDidNotTake)
{
    for (const char* frame : {"none", "crc16", "rwlt"}) {
        QProcess process;
        process.start(TARNWICKCTL,
                      {"monitor", "--link", "serial:adapter", "--for", "0.3", "--frame", frame,
                       "--timeout", "50", "--send", QString(30000, 'x')});
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_TRUE(process.readAllStandardError().contains("not sent")) << frame;
    }
}

TEST_F(Monitor, SendingAFrameLosesNoneThatCame)
{
    ASSERT_TRUE(port->write("\xABhi\xBA"));
    EXPECT_EQ(run({"--frame", "rwlt", "--send", "x", "--until", "hi", "--for", "5"}), 0);
}

TEST_F(Monitor, ClosedStreamsAreNotTheDevice)
{
    ASSERT_TRUE(port->write("hi"));
    QProcess process;
    process.start("sh",
                  {"-c", TARNWICKCTL " monitor --link serial:adapter --for 0.3 <&- >&- 2>&-"});
    EXPECT_TRUE(wait_until([&] {
        wire += port->read_now();
        return process.state() == QProcess::NotRunning;
    }));
    EXPECT_EQ(process.exitCode(), 6); // "hi" could not be shown
    EXPECT_EQ(wire, "");
}
} // namespace
