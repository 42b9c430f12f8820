// tarnwickctl monitor beside picocom and tio, on pseudo-terminals, in one run: the CPU that 8 MB of
// lines cost, the way of a key to the wire, and the return of a port.
//
//   bench_monitor [unplugs [short]]      short: without the comparisons
#include <QByteArray>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {
constexpr int STREAM_BYTES = 8 * 1000 * 1000;
constexpr int KEYS = 500;
constexpr int ROUNDS = 5; // of which the median counts
constexpr int STUCK_MS = 60'000;

struct Tty
{
    int master = -1;
    std::string path;

    Tty()
    {
        int slave = -1;
        char name[100];
        termios raw = {};
        cfmakeraw(&raw);
        raw.c_cflag |= CREAD | CS8;
        cfsetspeed(&raw, B115200);
        if (openpty(&master, &slave, name, &raw, nullptr) != 0)
            throw std::runtime_error("no pseudo-terminal");
        path = name;
        ::close(slave);
        ::fcntl(master, F_SETFD, FD_CLOEXEC);
        ::fcntl(master, F_SETFL, O_NONBLOCK);
    }
    ~Tty() { close(); }
    Tty(const Tty&) = delete;
    Tty& operator=(const Tty&) = delete;
    void close()
    {
        if (master >= 0)
            ::close(master);
        master = -1;
    }
};

struct Child
{
    pid_t pid = -1;
    double cpu_ms = 0;

    // Its stdin, and its stdout if `output` is below 0, are the terminal.
    Child(const std::vector<std::string>& words, const Tty& terminal, int output)
    {
        pid = ::fork();
        if (pid != 0)
            return;
        ::setsid();
        const int tty = ::open(terminal.path.c_str(), O_RDWR);
        ::dup2(tty, 0);
        ::dup2(output < 0 ? tty : output, 1);
        ::dup2(::open("/dev/null", O_WRONLY), 2);
        std::vector<char*> arguments;
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }

    void end()
    {
        ::kill(pid, SIGTERM);
        int status = 0;
        rusage usage = {};
        ::wait4(pid, &status, 0, &usage);
        const auto ms = [](const timeval& t) { return t.tv_sec * 1e3 + t.tv_usec / 1e3; };
        cpu_ms = ms(usage.ru_utime) + ms(usage.ru_stime);
    }

    // So far, from the system's own count.
    double cpu_now_ms() const
    {
        QFile file("/proc/" + QString::number(pid) + "/stat");
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        const QList<QByteArray> words = file.readAll().split(' ');
        return (words[13].toDouble() + words[14].toDouble()) * 1e3 / double(sysconf(_SC_CLK_TCK));
    }
};

QByteArray some_lines()
{
    QByteArray text;
    for (int i = 0; text.size() < STREAM_BYTES; ++i)
        text += "line " + QByteArray::number(i) + ": the quick brown fox jumps over the dog\r\n";
    text.truncate(STREAM_BYTES);
    return text;
}

// Whether something can be read.
bool wait_for(int descriptor, short events, int ms)
{
    pollfd one = {descriptor, events, 0};
    return ::poll(&one, 1, ms) == 1;
}

int drop_input(int descriptor)
{
    char bytes[65536];
    int total = 0;
    for (ssize_t count; (count = ::read(descriptor, bytes, sizeof bytes)) > 0;)
        total += int(count);
    return total;
}

void check(bool good, const char* what)
{
    if (!good)
        throw std::runtime_error(what);
}

// The child has the port open when a byte comes through.
void wait_until_open(const Tty& port, const std::function<std::int64_t()>& shown)
{
    const std::int64_t before = shown();
    QElapsedTimer clock;
    clock.start();
    while (shown() == before) {
        check(clock.elapsed() < STUCK_MS, "the program opens no port");
        check(::write(port.master, "*\n", 2) == 2, "a port takes nothing");
        ::usleep(50'000);
    }
}

enum class Sink { File, Pipe, Terminal };

// The CPU of one run over the whole stream.
double stream_ms(const std::function<std::vector<std::string>(const std::string&)>& command,
                 Sink sink, const QString& folder)
{
    static const QByteArray text = some_lines();
    const Tty port;
    const Tty terminal;
    const QByteArray path = QFile::encodeName(folder + "/output");
    int pipe_ends[2] = {-1, -1};
    int output = -1;
    if (sink == Sink::File)
        output = ::open(path.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (sink == Sink::Pipe) {
        check(::pipe2(pipe_ends, O_CLOEXEC) == 0, "no pipe");
        output = pipe_ends[1];
        ::fcntl(pipe_ends[0], F_SETFL, O_NONBLOCK);
    }
    Child child(command(port.path), terminal, output);
    std::int64_t seen = 0;
    const auto shown = [&]() -> std::int64_t {
        drop_input(port.master);
        const int on_terminal = drop_input(terminal.master);
        struct stat about = {};
        if (sink == Sink::File)
            return ::fstat(output, &about) == 0 ? about.st_size : 0;
        seen += sink == Sink::Pipe ? drop_input(pipe_ends[0]) : on_terminal;
        return seen;
    };
    wait_until_open(port, shown);
    const std::int64_t begun = shown();
    QElapsedTimer clock;
    clock.start();
    for (int done = 0; done < text.size();) {
        const ssize_t count =
            ::write(port.master, text.constData() + done, std::size_t(text.size() - done));
        done += int(std::max(ssize_t(0), count));
        if (count < 0)
            wait_for(port.master, POLLOUT, 1);
        if (sink != Sink::File)
            shown();
        check(clock.elapsed() < STUCK_MS, "the stream is stuck");
    }
    while (shown() - begun < text.size()) {
        check(clock.elapsed() < STUCK_MS, "bytes are missing");
        ::usleep(1000);
    }
    child.end();
    ::close(output);
    ::close(pipe_ends[0]);
    return child.cpu_ms;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

using Command = std::function<std::vector<std::string>(const std::string&)>;

Command monitor(const std::vector<std::string>& more = {})
{
    return [more](const std::string& port) {
        std::vector<std::string> words = {TARNWICKCTL, "monitor", "--link", "serial:" + port};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    };
}

const Command PICOCOM = [](const std::string& port) {
    return std::vector<std::string>{"picocom", "-q", "-b", "115200", port};
};
const Command TIO = [](const std::string& port) {
    return std::vector<std::string>{"tio", "-b", "115200", port};
};

// Both in turn, so that what else the machine does meets both.
void compare(const char* name, const Command& ours, const char* other_name, const Command& other,
             Sink sink, double limit)
{
    const QTemporaryDir folder;
    std::vector<double> our_ms;
    std::vector<double> other_ms;
    for (int i = 0; i < ROUNDS; ++i) {
        QFile::remove(folder.filePath("capture.pcapng"));
        our_ms.push_back(stream_ms(
            [&](const std::string& port) {
                std::vector<std::string> words = ours(port);
                if (words.back() == "--record")
                    words.push_back(folder.filePath("capture.pcapng").toStdString());
                return words;
            },
            sink, folder.path()));
        other_ms.push_back(stream_ms(other, sink, folder.path()));
    }
    const double ratio = median(our_ms) / median(other_ms);
    std::printf("%-28s %7.1f ms CPU, %s %7.1f ms: %.2f x (at most %.1f)%s\n", name, median(our_ms),
                other_name, median(other_ms), ratio, limit, ratio <= limit ? "" : "  MISSED");
    std::fflush(stdout);
}

void key_to_wire()
{
    const Tty port;
    const Tty terminal;
    Child child(monitor()(port.path), terminal, -1);
    wait_until_open(port,
                    [&]() -> std::int64_t { return drop_input(terminal.master) > 0 ? 1 : 0; });
    ::usleep(200'000);
    drop_input(port.master);
    std::vector<double> us;
    for (int i = 0; i < KEYS; ++i) {
        QElapsedTimer clock;
        clock.start();
        check(::write(terminal.master, "k", 1) == 1, "no key can be typed");
        check(wait_for(port.master, POLLIN, STUCK_MS), "a key doesn't come out");
        us.push_back(double(clock.nsecsElapsed()) / 1e3);
        drop_input(port.master);
        ::usleep(2000);
    }
    child.end();
    std::printf(
        "key to wire                  median %.0f us, longest %.0f us (median at most 1000)\n",
        median(us), *std::max_element(us.begin(), us.end()));
}

void reconnects(int times)
{
    const QTemporaryDir runtime;
    ::setenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit().constData(), 1);
    const QString folder = runtime.filePath("tarnwick/ports");
    QDir().mkpath(folder);
    ::chmod(folder.toLocal8Bit().constData(), 0700);
    const QByteArray link = (folder + "/adapter").toLocal8Bit();
    const Tty terminal;
    auto port = std::make_unique<Tty>();
    check(::symlink(port->path.c_str(), link.constData()) == 0, "no link can be made");
    Child child(monitor()(link.toStdString()), terminal, -1);
    QByteArray seen;
    const auto read_until = [&](const QByteArray& token) {
        QElapsedTimer clock;
        clock.start();
        while (!seen.contains(token)) {
            if (clock.elapsed() > STUCK_MS)
                throw std::runtime_error((token + " doesn't come, but: " + seen).toStdString());
            char bytes[4096];
            if (wait_for(terminal.master, POLLIN, 100)) {
                const ssize_t count = ::read(terminal.master, bytes, sizeof bytes);
                seen.append(bytes, int(std::max(ssize_t(0), count)));
            }
        }
        seen.clear();
    };
    read_until("is open");
    std::vector<double> ms;
    double idle_ms = 0;
    for (int i = 0; i < times; ++i) {
        if (i % 2 == 0)
            ::unlink(link.constData());
        port->close();
        ::unlink(link.constData());
        read_until("waiting for it");
        if (i == 0) {
            const double before = child.cpu_now_ms();
            ::sleep(3);
            idle_ms = child.cpu_now_ms() - before;
        }
        port = std::make_unique<Tty>();
        const QByteArray token = "token " + QByteArray::number(i) + ".\n";
        QElapsedTimer clock;
        clock.start();
        check(::symlink(port->path.c_str(), link.constData()) == 0, "no link can be made");
        check(::write(port->master, token.constData(), std::size_t(token.size())) == token.size(),
              "a port takes nothing");
        read_until(token.trimmed());
        ms.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    child.end();
    const auto late = std::count_if(ms.begin(), ms.end(), [](double m) { return m > 300; });
    std::printf(
        "%d unplugs                  back and shown after %.1f ms in the median, %.1f ms at "
        "most; %d later than 300 ms; CPU in 3 s without the port: %.0f ms\n",
        times, median(ms), *std::max_element(ms.begin(), ms.end()), int(late), idle_ms);
}
} // namespace

int main(int argc, char** argv)
{
    ::signal(SIGPIPE, SIG_IGN);
    try {
        if (argc > 2) {
            key_to_wire();
            reconnects(std::atoi(argv[1]));
            return 0;
        }
        compare("8 MB of lines into a file", monitor(), "picocom", PICOCOM, Sink::File, 1.3);
        compare("8 MB of lines into a pipe", monitor(), "picocom", PICOCOM, Sink::Pipe, 1.3);
        compare("  into a pipe, recorded", monitor({"--record"}), "picocom", PICOCOM, Sink::Pipe,
                1.6);
        compare("  into a terminal", monitor(), "tio", TIO, Sink::Terminal, 1.0);
        key_to_wire();
        reconnects(argc > 1 ? std::atoi(argv[1]) : 500);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_monitor: %s\n", error.what());
        return 1;
    }
    return 0;
}
