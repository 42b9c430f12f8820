#include "stackoptions.h"

#include "failure.h"

static constexpr int LONGEST_TIMEOUT_MS = 600'000;

QList<QCommandLineOption> stack_options()
{
    return {
        {"link",
         "How the device is connected: serial:/dev/ttyUSB0,115200,8N1 or tcp:HOST:PORT. "
         "`tarnwickctl help stack` tells all forms.",
         "link"},
        {"frame",
         "What stands around the payload on that link: none, crc16, rtu:ADDRESS, "
         "chan:PREFIX, ... joined by +, the one nearest to the link first.",
         "framers", "none"},
        {"timeout", "How long to wait for an answer, and for a connection.", "ms", "500"},
        {{"v", "verbose"}, "Show every exchange on stderr."},
        {"log", "Append every exchange to a file.", "file"},
    };
}

template <typename Value>
static Value checked(const char* option, const QString& text, const Parsed<Value>& parsed)
{
    if (parsed.error)
        throw usage_failure(
            QStringLiteral("--%1: %2\n%3")
                .arg(option, parsed.error->message, pointed_at(text, *parsed.error)),
            "`tarnwickctl help stack` tells all forms.");
    return parsed.value;
}

static StackSpec stack_spec(const Invocation& invocation)
{
    if (!invocation.has("link"))
        throw usage_failure(
            "--link is missing",
            "Say how the device is connected, as in --link "
            "serial:/dev/ttyUSB0,115200,8N1.\n`tarnwickctl ports` lists the ports.");
    const QString link = invocation.text("link");
    const QString frame = invocation.text("frame");
    StackSpec spec = {checked("link", link, parse_link(link)),
                      checked("frame", frame, parse_framers(frame)),
                      int(invocation.number("timeout", 1, LONGEST_TIMEOUT_MS))};
    checked("frame", frame, Parsed<bool>{true, find_misfit(spec.link, spec.framers)});
    return spec;
}

Connection::Connection(const Invocation& invocation)
    : log(invocation.console, invocation.has("verbose"), invocation.text("log"))
    , stack(stack_spec(invocation), log)
{
    if (invocation.has("verbose"))
        invocation.console.use_plain_progress();
}
