// tarnwickctl monitor: a terminal in a shell.
#include "cli/invocation.h"
#include "cli/linkfailure.h"
#include "cli/session.h"
#include "cli/typedargument.h"

#include "framers/qframer.h"
#include "monitor/serialwire.h"
#include "monitor/session.h"
#include "monitor/socketwire.h"
#include "stack/portproblem.h"
#include "stack/typedbytes.h"
#include "stack/typedtext.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <cmath>

namespace {
constexpr int LONGEST_DELAY_MS = 60'000;
// CR and CR LF end a line for ^ and $ too: most devices end theirs so.
constexpr char LINE_ENDS[] = "(*ANYCRLF)";
constexpr int LINE_ENDS_SIZE = sizeof LINE_ENDS - 1;
constexpr double LONGEST_SESSION_S = 1e9;

std::int64_t milliseconds(const Invocation& invocation, const char* option)
{
    if (!invocation.has(option))
        return 0;
    return invocation.number(option, 0, LONGEST_DELAY_MS) * NS_PER_MS;
}

// A number of seconds, not only a whole one.
std::optional<std::int64_t> session_limit(const Invocation& invocation)
{
    if (!invocation.has("for"))
        return std::nullopt;
    bool good = false;
    const double seconds = invocation.text("for").toDouble(&good);
    if (!good || !(seconds > 0 && seconds < LONGEST_SESSION_S))
        throw usage_failure("--for " + invocation.text("for") + ": a number of seconds is needed");
    return std::int64_t(std::llround(seconds * double(NS_PER_S)));
}

TypedBytes typed_text(const Piece& piece)
{
    TypedBytes typed = typed_bytes(piece.text);
    if (!typed.fault.isEmpty())
        throw piece.mid(typed.column, 2).error(typed.fault);
    return typed;
}

QByteArray string_bytes(const char* option, const QString& text, LineEnding ending)
{
    TypedBytes typed = parse_argument(QString("--") + option, text, typed_text);
    return typed.bytes + (typed.ended ? bytes_of(ending) : QByteArray());
}

QRegularExpression pattern(const char* option, const QString& text)
{
    QRegularExpression expression(QLatin1String(LINE_ENDS) + text,
                                  QRegularExpression::MultilineOption);
    if (expression.isValid() && !text.isEmpty())
        return expression;
    const int at = std::max(0, int(expression.patternErrorOffset() - LINE_ENDS_SIZE));
    const QString reason = text.isEmpty() ? "a pattern is needed" : expression.errorString();
    throw usage_failure(QString("--") + option + ": " + reason + '\n' +
                            pointed_at(text, {reason, std::min(at, int(text.size())), 1}),
                        "Patterns are regular expressions, as Perl has them.");
}

Script script_of(const Invocation& invocation, LineEnding ending)
{
    const QStringList expected = invocation.texts("expect");
    const QStringList replies = invocation.texts("reply");
    if (replies.size() > expected.size())
        throw usage_failure("a --reply has no --expect",
                            "Each --reply is sent when what its --expect says has come.");
    QVector<ScriptStep> steps;
    for (int i = 0; i < expected.size(); ++i)
        steps.append(
            {pattern("expect", expected[i]),
             i < replies.size() ? string_bytes("reply", replies[i], ending) : QByteArray()});
    if (!invocation.has("until"))
        return Script(steps, std::nullopt);
    return Script(steps, pattern("until", invocation.text("until")));
}

// --send and --send-hex in the order in which they are given.
void add_sends(const Invocation& invocation, LineEnding ending, SessionOptions& options)
{
    QStringList texts = invocation.texts("send");
    QStringList bytes = invocation.texts("send-hex");
    for (const QString& name : invocation.given()) {
        if (name == "send") {
            options.strings.append(texts.first());
            options.sends.append(string_bytes("send", texts.takeFirst(), ending));
        } else if (name == "send-hex") {
            options.sends.append(parse_argument("--send-hex", bytes.takeFirst(), parse_hex_bytes));
        }
    }
}

ViewOptions view_options(const Invocation& invocation)
{
    ViewOptions view;
    view.json = invocation.has("json");
    view.hex = invocation.has("hex");
    view.raw = invocation.has("raw");
    view.echo = invocation.has("echo");
    view.gap_ns = milliseconds(invocation, "gap");
    const auto kind = stamp_kind_named(invocation.text("stamps").toLatin1());
    if (!kind)
        throw usage_failure("--stamps " + invocation.text("stamps") +
                            ": one of off, time, delta, iso is needed");
    view.stamps = *kind;
    return view;
}

std::optional<LineEnding> given_ending(const Invocation& invocation)
{
    if (!invocation.has("line-ending"))
        return std::nullopt;
    LineEnding ending = LineEnding::Cr;
    if (!line_ending_named(invocation.text("line-ending"), ending))
        throw usage_failure("--line-ending " + invocation.text("line-ending") +
                            ": one of cr, lf, crlf, none is needed");
    return ending;
}

char prefix_key(const Invocation& invocation)
{
    const QString key = invocation.text("prefix").toLower();
    if (key.size() != 1 || key < "a" || key > "z" || key == "m" || key == "j")
        throw usage_failure("--prefix " + invocation.text("prefix") +
                            ": a letter is needed, but m and j, which are the Enter key");
    return char(key[0].toLatin1() & 0x1f);
}

std::optional<bool> line_state(const Invocation& invocation, const char* option)
{
    if (!invocation.has(option))
        return std::nullopt;
    const QString state = invocation.text(option);
    if (state != "on" && state != "off")
        throw usage_failure(QString("--") + option + ' ' + state + ": on or off is needed");
    return state == "on";
}

void set_log(const Invocation& invocation, SessionOptions& options)
{
    options.log = invocation.text("log");
    if (!invocation.has("rotate"))
        return;
    options.rotation = rotation_of(invocation.text("rotate"));
    if (!options.rotation)
        throw usage_failure("--rotate " + invocation.text("rotate") +
                                ": a size or a time is needed, such as 10M or 1d",
                            "Sizes end with k, M or G, times with min, h or d.");
    if (options.log.isEmpty())
        throw usage_failure("--rotate needs --log");
}

RecordSettings record_settings(const Invocation& invocation, const LinkDescription& link,
                               const QString& name)
{
    RecordSettings record;
    record.path = invocation.text("record");
    record.section = record_section(invocation);
    record.interface = record_port(link, invocation.text("link"), name);
    return record;
}

std::unique_ptr<Wire> make_wire(const Invocation& invocation, const StackDescription& stack)
{
    const LinkDescription& link = stack.link;
    const auto socket = [&](SocketKind kind) {
        for (const char* option : {"dtr", "rts"})
            if (invocation.has(option))
                throw usage_failure(QString("--") + option + ": only serial ports have that line");
        return std::make_unique<SocketWire>(kind, link.host, link.remote_port, stack.timeout_ms);
    };
    switch (link.kind) {
    case LinkKind::Serial: {
        PortSettings settings = link.settings;
        settings.Timeout_Millisec = stack.timeout_ms;
        const LinesAtOpen lines = {line_state(invocation, "dtr"), line_state(invocation, "rts")};
        full_port_name(link.port); // an ambiguous name fails now
        const auto find = [name = link.port] {
            try {
                return full_port_name(name);
            } catch (const LinkProblem&) {
                return name; // a second adapter of the kind came: neither is taken
            }
        };
        return std::make_unique<SerialWire>(find, settings, lines);
    }
    case LinkKind::Tcp:
    case LinkKind::RawTcp:
        return socket(SocketKind::Tcp);
    case LinkKind::Broadcast:
        return socket(SocketKind::Broadcast);
    default:
        return socket(SocketKind::Udp);
    }
}

// The strings of earlier sessions, one a line.
class StringsFile
{
public:
    QStringList read() const
    {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    // What a session beside this one has written meanwhile stays. What can't be kept is no loss
    // worth a word. It may hold passwords.
    void write(const QStringList& lines) const
    {
        QStringList all = read();
        for (const QString& line : lines)
            all.removeAll(line);
        all += lines;
        QDir().mkpath(QFileInfo(name).path());
        QSaveFile file(name);
        if (!file.open(QIODevice::WriteOnly))
            return;
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        file.write(all.mid(std::max(0, int(all.size()) - History::MOST)).join('\n').toUtf8() +
                   '\n');
        file.commit();
    }

private:
    const QString name = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         "/tarnwick/monitor-strings";
};

Failure open_failure(const LinkDescription& link, const WireFault& fault)
{
    if (link.kind == LinkKind::Serial)
        return open_failure(port_problem(fault.name, fault.code, fault.text));
    Failure failure = open_failure(LinkProblem{LinkTrouble::NoConnection, fault.name});
    failure.what += ": " + fault.text;
    return failure;
}

void report_end(const SessionResult& result, const LinkDescription& link, const Wire& wire)
{
    switch (result.end) {
    case SessionEnd::Quit:
    case SessionEnd::Reached:
    case SessionEnd::TimeOver:
        return;
    case SessionEnd::Missed:
        throw Failure{ExitCode::NoAnswer,
                      "nothing came that fits " + result.text.mid(LINE_ENDS_SIZE),
                      "What came is shown above; wait longer with --for, or change the pattern."};
    case SessionEnd::OpenFailed:
        throw open_failure(link, wire.fault());
    case SessionEnd::NoThread:
        throw LinkProblem{LinkTrouble::NoThread, wire.name()};
    case SessionEnd::LinkLost:
        throw Failure{ExitCode::Link, "the link is lost: " + result.text,
                      "Without --no-reconnect the session waits for it."};
    case SessionEnd::Interrupted:
        throw Failure{ExitCode::Interrupted, "interrupted", {}};
    case SessionEnd::OutputFailed:
        throw Failure{ExitCode::File, "standard output takes no more: " + result.text,
                      "Is its disk full, or has its reader ended?"};
    case SessionEnd::FileFailed:
        throw Failure{ExitCode::File, result.text, result.advice};
    }
}

// A framer writes its frame in one go, and what surrounds it may end with a silence.
void expect_no_pacing(const Invocation& invocation)
{
    for (const char* option : {"char-delay", "line-delay"})
        if (invocation.has(option))
            throw usage_failure(QString("--") + option + ": frames go out whole, without pauses",
                                "Leave out --frame, or pause in what writes to standard input: "
                                "each line of it is a frame.");
}

SessionOptions session_options(const Invocation& invocation, const StackDescription& stack)
{
    SessionOptions options;
    options.view = view_options(invocation);
    options.pacing = {milliseconds(invocation, "char-delay"),
                      milliseconds(invocation, "line-delay")};
    options.ending = given_ending(invocation);
    options.prefix = prefix_key(invocation);
    options.lines = invocation.has("line");
    options.wait = invocation.has("wait");
    options.reconnect = !invocation.has("no-reconnect");
    options.most_ns = session_limit(invocation);
    options.timeout_ms = stack.timeout_ms;
    const bool framed = !stack.framers.isEmpty() && stack.framers[0].kind != FramerKind::None;
    if (framed) {
        expect_no_pacing(invocation);
        options.framers = [framers = stack.framers](QLink& link) {
            return std::make_unique<FramerStack>(link, framers);
        };
    }
    // A frame ends by itself.
    const LineEnding ending = options.ending.value_or(framed ? LineEnding::None : LineEnding::Cr);
    options.script = script_of(invocation, ending);
    add_sends(invocation, ending, options);
    set_log(invocation, options);
    return options;
}

void expect_two_files(const SessionOptions& options)
{
    const QFileInfo log(log_name(options.log, QDateTime::currentDateTime()));
    const QFileInfo record(options.record.path);
    if (!options.log.isEmpty() && !options.record.path.isEmpty() &&
        log.absoluteFilePath() == record.absoluteFilePath())
        throw usage_failure("--log and --record name the same file",
                            "A capture holds more than text. Give two names.");
}

void run_monitor(Invocation& invocation)
{
    invocation.expect_at_most(0);
    const StackDescription stack = stack_description(invocation);
    SessionOptions options = session_options(invocation, stack);
    const std::unique_ptr<Wire> wire = make_wire(invocation, stack);
    options.record = record_settings(invocation, stack.link, wire->name());
    expect_two_files(options);
    const StringsFile strings;
    options.strings = strings.read() + options.strings;
    Session session(*wire, options);
    const SessionResult result = session.run();
    if (session.strings() != options.strings)
        strings.write(session.strings());
    report_end(result, stack.link, *wire);
}

const char DESCRIPTION[] =
    "A terminal: what the device sends is shown at once, and keys go out as typed. Ctrl-T is the\n"
    "prefix of all commands: Ctrl-T ? lists them, Ctrl-T q quits. When the port goes away, the\n"
    "session waits and goes on when it is back.\n"
    "  tarnwickctl monitor --link serial:ttyUSB0,115200\n"
    "  tarnwickctl monitor --link tcp:10.0.0.5:4001 --stamps time --log '%Y%m%d.log' --rotate 1d\n"
    "\n"
    "In scripts stdin is sent, --send sends a text and --until ends it with exit code 0 when the\n"
    "answer has come, or with 4 when --for is over before:\n"
    "  tarnwickctl monitor --link serial:ttyUSB0 --send AT --until OK --for 2\n"
    "  tarnwickctl monitor --link serial:ttyUSB0 --expect login: --reply root --until '# '\n"
    "\n"
    "Texts take \\r \\n \\t \\e \\0 \\\\ and \\x41; the line ending follows, unless \\c ends them.";
} // namespace

QList<Command> monitor_commands()
{
    return {
        {"monitor",
         "",
         "A terminal: show what comes, send what is typed.",
         DESCRIPTION,
         {{"hex", "Show bytes in hexadecimal, a frame a row."},
          {"raw", "Obey the device's control characters, whatever they do to the terminal."},
          {"stamps", "Put a stamp before lines and frames: off, time, delta or iso.", "kind",
           "off"},
          {"gap", "A silence of this many ms begins a new frame.", "ms"},
          {"echo", "Show what is sent, too."},
          {"line", "Edit lines before they are sent, with a history."},
          {"line-ending", "What Enter sends: cr, lf, crlf or none; cr if not given.", "ending"},
          {"prefix", "The letter that makes commands with Ctrl.", "letter", "t"},
          {"wait", "Wait for a port that isn't there yet."},
          {"no-reconnect", "End when the port goes away."},
          {"dtr", "The state of DTR from the open on: on or off.", "state"},
          {"rts", "The state of RTS from the open on: on or off.", "state"},
          {"send", "Send this text first, with the line ending; may be repeated.", "text"},
          {"send-hex", "Send these bytes, in hexadecimal; may be repeated.", "bytes"},
          {"expect", "Wait for this, a regular expression, and send its --reply.", "regex"},
          {"reply", "What to send when the --expect of the same number has come.", "text"},
          {"until", "End when this has come, after all --expect.", "regex"},
          {"for", "End after so many seconds.", "seconds"},
          {"char-delay", "Pause after each byte that is sent.", "ms"},
          {"line-delay", "Pause after each line that is sent.", "ms"},
          {"log", "Append what is shown to a file; its name may hold %Y, %m, %d, %H ...", "file"},
          {"rotate", "Change to a new log at a size or time, such as 10M or 1d.", "when"},
          {"record", "Record all bytes with their times into a capture (pcapng).", "file"}},
         Needs::Terminal,
         run_monitor}};
}
