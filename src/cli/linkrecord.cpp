#include "cli/linkrecord.h"

#include "cli/failure.h"
#include "stack/linkproblem.h"
#include "stack/portproblem.h"

namespace {
QString name_of(const LinkDescription& link)
{
    if (link.kind != LinkKind::Serial)
        return link_name(link);
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
    section.application =
        QString(PcapngSection::OWN_APPLICATION) + " tarnwickctl " + invocation.command_name();
    const QString frame = invocation.takes_frame() ? " --frame " + invocation.text("frame") : "";
    section.comments = QStringList("--link " + invocation.texts("link").join(" --link ") + frame);
    return section;
}

PcapngInterface record_port(const LinkDescription& link, const QString& text, const QString& name)
{
    PcapngInterface port;
    port.name = name;
    port.description = text;
    if (link.kind == LinkKind::Serial)
        port.speed = std::uint64_t(link.settings.BaudRate);
    return port;
}

RecordFile::RecordFile(Invocation& invocation)
    : invocation(invocation)
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
}

RecordFile::~RecordFile()
{
    if (!writer.is_open())
        return;
    const CaptureResult result = writer.close();
    if (result)
        return;
    invocation.console.note(result.error + '\n' + result.advice);
    invocation.ending = ExitCode::File;
}

std::uint32_t RecordFile::add_port(const LinkDescription& link, const QString& text)
{
    return writer.is_open() ? writer.add_port(record_port(link, text, name_of(link))) : 0;
}

void RecordFile::record(CaptureRecord record, std::uint32_t port)
{
    if (!writer.is_open())
        return;
    record.port = port;
    writer.record(std::move(record));
}

LinkRecord::LinkRecord(RecordFile& file, const LinkDescription& link, const QString& text,
                       ExchangeSink& log)
    : file(file)
    , log(log)
    , port(file.add_port(link, text))
{
}

void LinkRecord::sent(const QByteArray& bytes, int result)
{
    if (result > 0)
        file.record(CaptureRecord::sent(capture_time_ns(), bytes.left(result)), port);
    log.sent(bytes, result);
}

void LinkRecord::received(const QByteArray& bytes, int result)
{
    if (result > 0)
        file.record(CaptureRecord::received(capture_time_ns(), bytes), port);
    log.received(bytes, result);
}

void LinkRecord::note(const QString& text)
{
    file.record(CaptureRecord::remark(capture_time_ns(), text), port);
    log.note(text);
}
