#include "workbench/linkrecorder.h"

LinkRecorder::LinkRecorder()
    : desk(new Mailbox)
{
    desk->moveToThread(&thread);
    connect(&thread, &QThread::finished, desk, &QObject::deleteLater);
    thread.setObjectName("recorder");
}

LinkRecorder::~LinkRecorder()
{
    if (!thread.isRunning()) {
        delete desk;
        return;
    }
    desk->post_and_wait([this] { close_here(); });
    thread.quit();
    thread.wait();
}

void LinkRecorder::start(const QString& path, const QString& remark)
{
    thread.start();
    // The system may refuse another thread.
    if (!thread.isRunning())
        return emit said(false, tr("The system starts no thread for the recording: end other "
                                   "programs."));
    file = path;
    desk->post([this, path, remark] { open_here(path, remark); });
    emit changed();
}

void LinkRecorder::stop()
{
    desk->post([this] { close_here(); });
}

// On the recorder's thread, as is close_here().
void LinkRecorder::open_here(const QString& path, const QString& remark)
{
    auto begun = std::make_unique<CaptureWriter>(
        [this](const CaptureReport& news) { home.post([this, news] { report(news); }); });
    PcapngSection section;
    section.application = QString(PcapngSection::OWN_APPLICATION) + " tarnwick-workbench";
    section.comments = QStringList(remark);
    const CaptureResult result = begun->open(path, section, CaptureExisting::Append);
    if (result) {
        const std::lock_guard<std::mutex> lock(mutex);
        writer = std::move(begun);
        ++recordings;
    }
    home.post([this, result] { opened(result); });
}

void LinkRecorder::close_here()
{
    std::unique_ptr<CaptureWriter> ending;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        ending = std::move(writer);
    }
    if (!ending)
        return;
    const CaptureResult result = ending->close();
    home.post([this, result] { closed(result); });
}

void LinkRecorder::opened(const CaptureResult& result)
{
    if (result)
        emit said(true, tr("Recording into %1.").arg(file));
    else
        emit said(false, tr("There is no recording (%1): choose another file.").arg(result.error));
    if (!result)
        file.clear();
    emit changed();
}

void LinkRecorder::closed(const CaptureResult& result)
{
    const QString path = std::exchange(file, {});
    if (result)
        emit said(true, tr("The recording is in %1.").arg(path));
    else
        emit said(false, tr("The recording in %1 has gaps: %2 bytes are missing.")
                             .arg(path, QString::number(result.lost)));
    emit changed();
}

void LinkRecorder::report(const CaptureReport& report)
{
    switch (report.kind) {
    case CaptureReport::Kind::Failing:
        return emit said(false, tr("%1 can't be written (%2): make room, or plug the disk in.")
                                    .arg(report.path, report.reason));
    case CaptureReport::Kind::Behind:
        return emit said(false, tr("The disk of %1 is too slow, and bytes are being lost: record "
                                   "to another one.")
                                    .arg(report.path));
    case CaptureReport::Kind::Recovered:
    case CaptureReport::Kind::CaughtUp:
        return emit said(report.lost == 0, tr("%1 is written again; bytes that were lost: %2.")
                                               .arg(report.path, QString::number(report.lost)));
    }
}

void LinkRecorder::record(CaptureRecord record, RecordedLink& link)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!writer)
        return;
    if (std::exchange(link.recording, recordings) != recordings)
        link.number = writer->add_port(link.port);
    record.port = link.number;
    writer->record(std::move(record));
}

void RecordedLink::description_set(const StackDescription& description)
{
    const LinkDescription& link = description.link;
    const std::lock_guard<std::mutex> lock(recorder.mutex);
    if (port.description == link_text(link))
        return;
    port.name = link.kind == LinkKind::Serial ? link.port : link_name(link);
    port.description = link_text(link);
    port.speed = link.kind == LinkKind::Serial ? std::uint64_t(link.settings.BaudRate) : 0;
    recording = 0;
}

void RecordedLink::sent(const QByteArray& bytes, int result)
{
    if (result > 0)
        recorder.record(CaptureRecord::sent(capture_time_ns(), bytes.left(result)), *this);
}

void RecordedLink::received(const QByteArray& bytes, int result)
{
    if (result > 0)
        recorder.record(CaptureRecord::received(capture_time_ns(), bytes), *this);
}

void RecordedLink::note(const QString& text)
{
    recorder.record(CaptureRecord::remark(capture_time_ns(), text), *this);
}
