#include "cli/session.h"

#include "cli/typedargument.h"

namespace {
constexpr int LONGEST_TIMEOUT_MS = 600'000;
const char ALL_FORMS[] = "`tarnwickctl help stack` shows all forms.";
const char NO_CNET_ANSWER_ADVICE[] =
    "Is the local device on? Check the port, its rate and format; for a device on the air, "
    "--channel and --rate, or wait longer with --timeout.";
const char NO_DORV_ANSWER_ADVICE[] =
    "Is the module on and in command mode? `tarnwickctl dorv mode command` asks for that. Check "
    "the port, its rate and format, or wait longer with --timeout.";

void check_no_dorv(const Piece& frame)
{
    for (const FramerDescription& framer : parse_framers(frame)) {
        if (framer.kind == FramerKind::Dorv)
            throw framer.piece.error("the settings are no payload: without dorv");
    }
}

QString visible(const QByteArray& reply)
{
    return QString::fromLatin1(reply.trimmed()).replace('\r', "\\r").replace('\n', "\\n");
}

void check_link_given(const Invocation& invocation)
{
    if (!invocation.has("link"))
        throw usage_failure(
            "--link is missing",
            "Say how the device is connected, as in --link "
            "serial:/dev/ttyUSB0,115200,8N1.\n`tarnwickctl ports` lists the ports.");
}

StackDescription description_on(const QString& link, const Invocation& invocation)
{
    const QString frame = invocation.takes_frame() ? invocation.text("frame") : "none";
    StackDescription stack = {parse_argument("--link", link, parse_link, ALL_FORMS),
                              parse_argument("--frame", frame, parse_framers, ALL_FORMS),
                              int(invocation.number("timeout", 1, LONGEST_TIMEOUT_MS))};
    const auto fit = [&](const Piece&) { check_fit(stack.link, stack.framers); };
    parse_argument("--frame", frame, fit, ALL_FORMS);
    return stack;
}
} // namespace

StackDescription stack_description(const Invocation& invocation)
{
    check_link_given(invocation);
    return description_on(invocation.text("link"), invocation);
}

QVector<StackDescription> stack_descriptions(const Invocation& invocation)
{
    check_link_given(invocation);
    QVector<StackDescription> stacks;
    for (const QString& link : invocation.texts("link"))
        stacks.append(description_on(link, invocation));
    return stacks;
}

QList<QCommandLineOption> stack_options(Needs needs)
{
    QList<QCommandLineOption> options = {
        {"link",
         "How the device is connected: serial:/dev/ttyUSB0,115200,8N1 or tcp:HOST:PORT. "
         "`tarnwickctl help stack` shows all forms.",
         "link"},
        {"timeout", "How long to wait for an answer, and for a connection.", "ms", "500"},
        {{"v", "verbose"}, "Show every exchange on stderr."},
        {"log", "Append every exchange to a file.", "file"},
        {"record", "Record all bytes with their times into a capture (pcapng).", "file"},
    };
    const QCommandLineOption frame(
        "frame",
        "What is around the payload on that link: none, crc16, rtu:ADDRESS, chan:PREFIX, ... "
        "joined by +, the one nearest to the link first.",
        "framers", "none");
    // A terminal shows every exchange as it is, and has a log of its own kind.
    if (needs == Needs::Terminal)
        options = options.mid(0, 2);
    if (needs >= Needs::StackOrNothing)
        options.insert(1, frame);
    return options;
}

Connection::Connection(Invocation& invocation)
    : description(stack_description(invocation))
    , log(invocation.console, invocation.has("verbose"), invocation.text("log"))
    , file(invocation)
    , record(file, description.link, invocation.text("link"), log)
    , stack(description, record)
{
    if (invocation.has("verbose"))
        invocation.console.use_plain_progress();
}

CnetSession::CnetSession(Invocation& invocation)
    : connection(invocation)
    , cfg(&connection.stack.link())
{
    QObject::connect(
        &cfg, &CnetCfg::log, &cfg, [this](const QString& line) { connection.log.note(line); },
        Qt::DirectConnection);
}

Failure CnetSession::failure(const QString& what) const
{
    if (cfg.outcome() == CnetOutcome::Refused)
        return {ExitCode::Refused, what + ": the device refused", {}};
    return no_answer(connection.stack, what, NO_CNET_ANSWER_ADVICE);
}

DorvSession::DorvSession(Invocation& invocation)
    : connection(invocation)
    , cfg(&connection.stack.link())
{
    parse_argument("--frame", invocation.text("frame"), check_no_dorv);
    cfg.framer_set(&connection.stack.top());
    connection.stack.open();
}

Failure DorvSession::failure(const QString& what) const
{
    switch (cfg.outcome()) {
    case DorvOutcome::Refused:
        return {
            ExitCode::Refused, what + ": the module answered \"" + visible(cfg.reply()) + '"', {}};
    case DorvOutcome::Echoed:
        return {ExitCode::Refused, what + ": the module echoes what it is sent",
                "Turn that off first, with `tarnwickctl dorv set echo off`."};
    default:
        return no_answer(connection.stack, what, NO_DORV_ANSWER_ADVICE);
    }
}

void DorvSession::check(const QString& what) const
{
    if (cfg.outcome() != DorvOutcome::Done)
        throw failure(what);
}
