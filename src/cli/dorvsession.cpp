#include "cli/dorvsession.h"

#include "cli/usage.h"

static const char NO_ANSWER_ADVICE[] =
    "Is the module on and in command mode? `tarnwickctl dorv mode "
    "command` asks for that. Check the "
    "port, its rate and format, or wait longer with --timeout.";

static QString visible(const QByteArray& reply)
{
    return QString::fromLatin1(reply.trimmed()).replace('\r', "\\r").replace('\n', "\\n");
}

DorvSession::DorvSession(const Invocation& invocation)
    : connection(invocation)
    , cfg(&connection.stack.link())
{
    const QString frame = invocation.text("frame");
    for (const FramerSpec& framer : parse_framers(frame).value) {
        const SpecError misfit = framer.piece.error("the settings are no payload: without dorv");
        if (framer.kind == FramerKind::Dorv)
            parsed_or_usage("--frame", frame, Parsed<bool>{true, misfit});
    }
    cfg.framer_set(&connection.stack.top());
    connection.stack.open();
}

Failure DorvSession::failure(const QString& what) const
{
    if (reply().trimmed().isEmpty() || connection.stack.link().failed())
        return connection.stack.no_answer(what, NO_ANSWER_ADVICE);
    return {ExitCode::Refused, what + ": the module answered \"" + visible(reply()) + '"', {}};
}

void DorvSession::check(int result, const QString& what) const
{
    if (result != 0 || reply().toLower().contains("err"))
        throw failure(what);
}
