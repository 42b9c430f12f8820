#include "monitor/recorder.h"

#include "serialport/linestatus.h"

Recorder::Recorder(Inbox& inbox)
    : writer([&inbox](const CaptureReport& report) {
        inbox.put_note(report.text(), capture_time_ns());
    })
{
}

CaptureResult Recorder::open(const RecordSettings& settings)
{
    if (settings.path.isEmpty())
        return {true, {}, {}, 0, 0};
    CaptureResult result = writer.open(settings.path, settings.section, CaptureExisting::Append);
    if (!result)
        return result;
    port = writer.add_port(settings.interface);
    active = true;
    return result;
}

void Recorder::record(const Chunk& chunk)
{
    if (!active)
        return;
    CaptureRecord record = chunk.direction == Direction::In
                               ? CaptureRecord::received(chunk.time_ns, chunk.bytes)
                               : CaptureRecord::sent(chunk.time_ns, chunk.bytes);
    record.port = port;
    record.lines = lines;
    writer.record(std::move(record));
}

void Recorder::remark(const QString& text)
{
    if (!active)
        return;
    CaptureRecord record = CaptureRecord::remark(capture_time_ns(), text);
    record.port = port;
    record.lines = lines;
    writer.record(std::move(record));
}

void Recorder::set_lines(int status)
{
    static constexpr struct
    {
        LineStatus line;
        CaptureLine bit;
    } ROWS[] = {{LS_CTS, CAPTURE_CTS}, {LS_DSR, CAPTURE_DSR}, {LS_DCD, CAPTURE_DCD},
                {LS_RI, CAPTURE_RING}, {LS_RTS, CAPTURE_RTS}, {LS_DTR, CAPTURE_DTR}};
    std::uint8_t bits = 0;
    for (const auto& row : ROWS)
        if (status >= 0 && (status & row.line) != 0)
            bits |= row.bit;
    lines = bits;
}

CaptureResult Recorder::close()
{
    if (!active.exchange(false))
        return {true, {}, {}, 0, 0};
    return writer.close();
}
