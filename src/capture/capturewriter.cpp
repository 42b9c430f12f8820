#include "capture/capturewriter.h"

#include "capture/recording.h"

#include <QSysInfo>

namespace {

PcapngSection completed(PcapngSection section)
{
    const QString own = PcapngSection::OWN_APPLICATION;
    if (!section.is_own())
        section.application =
            section.application.isEmpty() ? own : own + ": " + section.application;
    if (section.system.isEmpty())
        section.system = QSysInfo::prettyProductName();
    return section;
}

} // namespace

QString CaptureReport::text() const
{
    const QString lost_text =
        lost == 0 ? "nothing was lost"
                  : QStringLiteral("%1 bytes were lost, and the file says where").arg(lost);
    switch (kind) {
    case Kind::Failing:
        return path + " can't be written: " + reason +
               ". Make room or plug the disk in: what comes meanwhile is kept while memory for it "
               "lasts, and written then.";
    case Kind::Recovered:
        return path + " is written again: " + lost_text;
    case Kind::Behind:
        return path + ": the disk is too slow, and bytes are being lost. Record to another one.";
    case Kind::CaughtUp:
        return path + ": the disk has caught up: " + lost_text;
    }
    return {};
}

CaptureWriter::CaptureWriter(Report report, std::size_t queue_bytes)
    : report(std::move(report))
    , queue_bytes(queue_bytes)
{
}

CaptureWriter::~CaptureWriter()
{
    close();
}

CaptureResult CaptureWriter::open(const QString& path, const PcapngSection& section,
                                  CaptureExisting existing)
{
    close();
    auto begun = std::make_unique<Recording>(path, report, queue_bytes);
    const CaptureResult result = begun->open(completed(section), existing);
    if (result)
        recording = std::move(begun);
    return result;
}

bool CaptureWriter::is_open() const
{
    return recording != nullptr;
}

std::uint32_t CaptureWriter::add_port(const PcapngInterface& port)
{
    return recording ? recording->add_port(port) : 0;
}

void CaptureWriter::record(CaptureRecord record)
{
    if (recording)
        recording->record(std::move(record));
}

bool CaptureWriter::flush(std::chrono::milliseconds patience)
{
    return !recording || recording->flush(patience);
}

CaptureResult CaptureWriter::close()
{
    CaptureResult result;
    result.good = true;
    if (recording)
        result = recording->close();
    recording.reset();
    return result;
}
