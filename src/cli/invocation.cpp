#include "cli/invocation.h"

#include "cli/typedargument.h"

#include <QFile>
#include <limits>

#ifdef Q_OS_UNIX
#include <poll.h>
#include <unistd.h>
#endif

namespace {
QByteArray read_all(QFile& file, const QString& name)
{
    // More than a byte array holds. The size of a pipe is 0 and says nothing.
    if (file.size() >= std::numeric_limits<int>::max() - 1024)
        throw Failure{ExitCode::File, name + " is larger than 2 GiB", {}};
    QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError || bytes.size() < file.size())
        throw Failure{
            ExitCode::File, name + " can't be read to its end: " + file.errorString(), {}};
    return bytes;
}

#ifdef Q_OS_UNIX
// One line from stdin. Throws Failure when a signal comes first: a read would start again after it,
// a poll ends.
QByteArray typed_line(const Interrupts& interrupts)
{
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, -1) < 0)
        interrupts.check();
    char line[100] = {};
    const ssize_t size = read(STDIN_FILENO, line, sizeof line);
    return QByteArray(line, int(size > 0 ? size : 0)).trimmed().toLower();
}
#endif
} // namespace

Invocation::Invocation(const Command& command, const QCommandLineParser& parser,
                       QStringList arguments, Console& console, Interrupts& interrupts)
    : console(console)
    , interrupts(interrupts)
    , command(command)
    , parser(parser)
    , arguments(std::move(arguments))
{
}

QString Invocation::argument(int index, const QString& name) const
{
    if (index >= arguments.size())
        throw usage_failure(name + " is missing",
                            "`tarnwickctl " + command.name + " --help` shows more.");
    return arguments[index];
}

void Invocation::expect_at_most(int count) const
{
    if (arguments.size() > count)
        throw usage_failure("unexpected: " + arguments.mid(count).join(' '),
                            "Words with blanks in them need quotation marks.");
}

bool Invocation::takes_frame() const
{
    return command.needs >= Needs::StackOrNothing;
}

bool Invocation::has(const char* option) const
{
    return parser.isSet(option);
}

QString Invocation::text(const char* option) const
{
    return parser.value(option);
}

QStringList Invocation::texts(const char* option) const
{
    return parser.values(option);
}

QStringList Invocation::given() const
{
    return parser.optionNames();
}

std::int64_t Invocation::number(const char* option, std::int64_t least, std::int64_t most) const
{
    const auto value = number_in(text(option), least, most);
    if (!value)
        throw usage_failure(QStringLiteral("--%1 %2: a number from %3 to %4 is needed")
                                .arg(QLatin1String(option), text(option), QString::number(least),
                                     QString::number(most)));
    return *value;
}

QByteArray Invocation::payload(int argument) const
{
    if (has("hex") && has("text"))
        throw usage_failure("--hex and --text: choose one of them");
    if (has("text"))
        return text("text").toUtf8();
    if (has("hex"))
        return parse_argument("--hex", text("hex"), parse_hex_bytes);
    const QString name = arguments.value(argument, "-");
    QFile file(name);
    if (name == "-") {
        if (!file.open(stdin, QIODevice::ReadOnly))
            throw Failure{ExitCode::File, "standard input can't be read", {}};
        return read_all(file, "standard input");
    }
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{ExitCode::File, "the file " + name + " can't be read: " + file.errorString(),
                      "Check the name and the rights of the file."};
    return read_all(file, name);
}

void Invocation::confirm(const QString& question) const
{
#ifdef Q_OS_UNIX
    if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0)
        return;
    console.note(question + " Type yes to go on, or give --yes:");
    const QByteArray answer = typed_line(interrupts);
    if (answer != "yes" && answer != "y")
        throw Failure{ExitCode::Interrupted, "not done, as the answer wasn't yes", {}};
#else
    Q_UNUSED(question)
#endif
}

QList<QCommandLineOption> payload_options()
{
    return {{"hex", "Take these bytes, in hexadecimal.", "bytes"},
            {"text", "Take this text, in UTF-8.", "text"}};
}
