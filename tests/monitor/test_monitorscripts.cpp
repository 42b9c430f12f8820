// What a script does, and what goes to files.
#include "capture/capturereader.h"
#include "monitortest.h"
#include "serialport/filedescriptor.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <atomic>
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <thread>

namespace {

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
        {{"--frame", "crc16", "--send", "a", "--expect", "a", "--reply", "b"},
         "",
         0,
         QByteArray::fromHex("617ea8623ea9"),
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

// On one processor the device often answers before the write of its request returns.
TEST_F(Monitor, ARecordHasWhatIsSentAheadOfItsEcho)
{
    cpu_set_t before, one;
    ASSERT_EQ(::sched_getaffinity(0, sizeof before, &before), 0);
    CPU_ZERO(&one);
    for (int i = 0; CPU_COUNT(&one) == 0; ++i)
        if (CPU_ISSET(i, &before))
            CPU_SET(i, &one);
    ::sched_setaffinity(0, sizeof one, &one);
    const QString record = sandbox.path("it.pcapng");
    QStringList options = {"--send", "a", "--record", record, "--for", "20", "--until", "b"};
    for (int i = 0; i < 300; ++i)
        options += {"--expect", "a\\r", "--reply", i < 299 ? "a" : "b"};
    std::atomic<bool> stop = false;
    std::thread echo([&, fd = port->master_fd()] {
        while (!stop) {
            pollfd ready = {fd, POLLIN, 0};
            ::poll(&ready, 1, 1);
            char bytes[64];
            const ssize_t count = ::read(fd, bytes, sizeof bytes);
            if (count <= 0 || ::write(fd, bytes, std::size_t(count)) < count)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    start(options);
    EXPECT_EQ(exit_code(), 0);
    stop = true;
    echo.join();
    ::sched_setaffinity(0, sizeof before, &before);

    QFile file(record);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    CaptureReader reader(file);
    std::int64_t ahead = 0;
    for (auto found = reader.next(); found != CaptureReader::Found::End; found = reader.next()) {
        if (found != CaptureReader::Found::Record)
            continue;
        const std::int64_t size = reader.record().bytes.size();
        ahead += reader.record().event == CaptureEvent::DataSent       ? size
                 : reader.record().event == CaptureEvent::DataReceived ? -size
                                                                       : 0;
        ASSERT_GE(ahead, 0);
    }
    EXPECT_GE(reader.offset(), 1000);
}

} // namespace
