#include "cli/linkrecord.h"

#include "cli/failure.h"
#include "stack/linkproblem.h"
#include "stack/portproblem.h"

#include <QSysInfo>

namespace {
QString name_of(const LinkDescription& link)
{
    if (link.kind != LinkKind::Serial)
        return QStringLiteral("%1:%2").arg(link.host, QString::number(link.remote_port));
    try {
        return full_port_name(link.port);
    } catch (const LinkProblem&) {
        return link.port; // the open reports it
    }
}
} // namespace

PcapngSection record_section(const Invocation& invocation)
{
    PcapngSection section;
    section.system = QSysInfo::prettyProductName();
    section.application =
        QString(PcapngSection::OWN_APPLICATION) + " tarnwickctl " + invocation.command_name();
    const QString frame = invocation.takes_frame() ? " --frame " + invocation.text("frame") : "";
    section.comments = QStringList("--link " + invocation.text("link") + frame);
    return section;
}

PcapngInterface record_port(const Invocation& invocation, const LinkDescription& link,
                            const QString& name)
{
    PcapngInterface port;
    port.name = name;
    port.description = invocation.text("link");
    if (link.kind == LinkKind::Serial)
        port.speed = std::uint64_t(link.settings.BaudRate);
    return port;
}

LinkRecord::LinkRecord(const Invocation& invocation, const LinkDescription& link, ExchangeSink& log)
    : invocation(invocation)
    , log(log)
    , writer([&console = invocation.console](const CaptureReport& report) {
        console.note(report.text());
    })
{
    if (!invocation.has("record"))
        return;
    const CaptureResult result =
        writer.open(invocation.text("record"), record_section(invocation), CaptureExisting::Append);
    if (!result)
        throw Failure{ExitCode::File, result.error, result.advice};
    port = writer.add_port(record_port(invocation, link, name_of(link)));
}

LinkRecord::~LinkRecord()
{
    if (!writer.is_open())
        return;
    const CaptureResult result = writer.close();
    if (!result)
        invocation.console.note(result.error + '\n' + result.advice);
}

void LinkRecord::sent(const QByteArray& bytes, int result)
{
    if (result > 0)
        record(CaptureRecord::sent(capture_time_ns(), bytes.left(result)));
    log.sent(bytes, result);
}

void LinkRecord::received(const QByteArray& bytes, int result)
{
    if (result > 0)
        record(CaptureRecord::received(capture_time_ns(), bytes));
    log.received(bytes, result);
}

void LinkRecord::note(const QString& text)
{
    record(CaptureRecord::remark(capture_time_ns(), text));
    log.note(text);
}

void LinkRecord::record(CaptureRecord record)
{
    if (!writer.is_open())
        return;
    record.port = port;
    writer.record(std::move(record));
}
