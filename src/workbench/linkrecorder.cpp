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

void LinkRecorder::link_set(const StackDescription& description)
{
    const LinkDescription& link = description.link;
    PcapngInterface next;
    next.name = link.kind == LinkKind::Serial ? link.port : link_name(link);
    next.description = link_text(link);
    if (link.kind == LinkKind::Serial)
        next.speed = std::uint64_t(link.settings.BaudRate);
    const std::lock_guard<std::mutex> lock(mutex);
    stack_text = "--link " + next.description + " --frame " + framers_text(description.framers);
    if (writer && next.description != port_description.description)
        port = writer->add_port(next);
    port_description = next;
}

void LinkRecorder::start(const QString& path)
{
    thread.start();
    // The system may refuse another thread.
    if (!thread.isRunning())
        return emit said(false, tr("The system starts no thread for the recording: end other "
                                   "programs."));
    file = path;
    desk->post([this, path] { open_here(path); });
    emit changed();
}

void LinkRecorder::stop()
{
    desk->post([this] { close_here(); });
}

// On the recorder's thread, as is close_here().
void LinkRecorder::open_here(const QString& path)
{
    auto begun = std::make_unique<CaptureWriter>(
        [this](const CaptureReport& news) { home.post([this, news] { report(news); }); });
    PcapngSection section;
    section.application = QString(PcapngSection::OWN_APPLICATION) + " tarnwick-workbench";
    {
        const std::lock_guard<std::mutex> lock(mutex);
        section.comments = QStringList(stack_text);
    }
    const CaptureResult result = begun->open(path, section, CaptureExisting::Append);
    if (result) {
        const std::lock_guard<std::mutex> lock(mutex);
        port = begun->add_port(port_description);
        writer = std::move(begun);
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

void LinkRecorder::record(CaptureRecord record)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (!writer)
        return;
    record.port = port;
    writer->record(std::move(record));
}

void LinkRecorder::sent(const QByteArray& bytes, int result)
{
    if (result > 0)
        record(CaptureRecord::sent(capture_time_ns(), bytes.left(result)));
}

void LinkRecorder::received(const QByteArray& bytes, int result)
{
    if (result > 0)
        record(CaptureRecord::received(capture_time_ns(), bytes));
}

void LinkRecorder::note(const QString& text)
{
    record(CaptureRecord::remark(capture_time_ns(), text));
}
