// What passes a link, recorded into a capture.
#pragma once

#include "capture/capturewriter.h"
#include "stack/exchangesink.h"
#include "stack/stack.h"
#include "workbench/mailbox.h"

#include <QObject>
#include <QThread>
#include <memory>
#include <mutex>

// Belongs to the window's thread, like its signals; the file is opened and closed on a thread of
// its own, as both may wait for the disk. Exchanges come from any thread.
class LinkRecorder : public QObject, public ExchangeSink
{
    Q_OBJECT

public:
    LinkRecorder();
    // Ends the recording and waits for the disk, for at most CaptureWriter::CLOSE_PATIENCE.
    ~LinkRecorder() override;

    // From start() until the file is closed.
    bool recording() const { return !file.isEmpty(); }
    const QString& path() const { return file; }
    // The link and its framers from now on.
    void link_set(const StackDescription& description);
    // Only while not recording. A capture that is there goes on after its end.
    void start(const QString& path);
    void stop();

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

signals:
    void changed();
    // One sentence about the file.
    void said(bool good, QString sentence);

private:
    void open_here(const QString& path);
    void close_here();
    void opened(const CaptureResult& result);
    void closed(const CaptureResult& result);
    void report(const CaptureReport& report);
    void record(CaptureRecord record);

    Mailbox home; // for what comes back from other threads
    QThread thread;
    Mailbox* desk; // lives on the thread
    QString file;
    std::mutex mutex; // guards all below
    std::unique_ptr<CaptureWriter> writer;
    PcapngInterface port_description;
    QString stack_text; // the options of tarnwickctl
    std::uint32_t port = 0;
};
