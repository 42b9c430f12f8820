#include "cli/stackoptions.h"

#include "cli/usage.h"

static constexpr int LONGEST_TIMEOUT_MS = 600'000;

QList<QCommandLineOption> stack_options(Needs needs)
{
    QList<QCommandLineOption> options = {
        {"link",
         "How the device is connected: serial:/dev/ttyUSB0,115200,8N1 or tcp:HOST:PORT. "
         "`tarnwickctl help stack` tells all forms.",
         "link"},
        {"timeout", "How long to wait for an answer, and for a connection.", "ms", "500"},
        {{"v", "verbose"}, "Show every exchange on stderr."},
        {"log", "Append every exchange to a file.", "file"},
    };
    const QCommandLineOption frame(
        "frame",
        "What stands around the payload on that link: none, crc16, rtu:ADDRESS, chan:PREFIX, ... "
        "joined by +, the one nearest to the link first.",
        "framers", "none");
    if (needs >= Needs::StackOrNothing)
        options.insert(1, frame);
    return options;
}

static const char ALL_FORMS[] = "`tarnwickctl help stack` tells all forms.";

static StackSpec stack_spec(const Invocation& invocation)
{
    if (!invocation.has("link"))
        throw usage_failure(
            "--link is missing",
            "Say how the device is connected, as in --link "
            "serial:/dev/ttyUSB0,115200,8N1.\n`tarnwickctl ports` lists the ports.");
    const QString link = invocation.text("link");
    const QString frame = invocation.takes_frame() ? invocation.text("frame") : "none";
    StackSpec spec = {parsed_or_usage("--link", link, parse_link(link), ALL_FORMS),
                      parsed_or_usage("--frame", frame, parse_framers(frame), ALL_FORMS),
                      int(invocation.number("timeout", 1, LONGEST_TIMEOUT_MS))};
    parsed_or_usage("--frame", frame, Parsed<bool>{true, find_misfit(spec.link, spec.framers)},
                    ALL_FORMS);
    return spec;
}

Connection::Connection(const Invocation& invocation)
    : log(invocation.console, invocation.has("verbose"), invocation.text("log"))
    , stack(stack_spec(invocation), log)
{
    if (invocation.has("verbose"))
        invocation.console.use_plain_progress();
}
