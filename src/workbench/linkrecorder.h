// What passes links, recorded into one capture.
#pragma once

#include "capture/capturewriter.h"
#include "stack/exchangesink.h"
#include "stack/stack.h"
#include "workbench/mailbox.h"

#include <QObject>
#include <QThread>
#include <memory>
#include <mutex>

class RecordedLink;

// Belongs to the window's thread, like its signals; the file is opened and closed on a thread of
// its own, as both may wait for the disk.
class LinkRecorder : public QObject
{
    Q_OBJECT

public:
    LinkRecorder();
    // Ends the recording and waits for the disk, for at most CaptureWriter::CLOSE_PATIENCE.
    ~LinkRecorder() override;

    // From start() until the file is closed.
    bool recording() const { return !file.isEmpty(); }
    const QString& path() const { return file; }
    // Only while not recording. A capture that is there goes on after its end. `remark` says what
    // is recorded.
    void start(const QString& path, const QString& remark);
    void stop();

signals:
    void changed();
    // One sentence about the file.
    void said(bool good, QString sentence);

private:
    friend RecordedLink;

    void open_here(const QString& path, const QString& remark);
    void close_here();
    void opened(const CaptureResult& result);
    void closed(const CaptureResult& result);
    void report(const CaptureReport& report);
    void record(CaptureRecord record, RecordedLink& link);

    Mailbox home; // for what comes back from other threads
    QThread thread;
    Mailbox* desk; // lives on the thread
    QString file;
    std::mutex mutex; // guards what follows, and the links
    std::unique_ptr<CaptureWriter> writer;
    int recordings = 0; // so far
};

// A link whose exchanges go into the recording, if there is one. They come from any thread.
class RecordedLink : public ExchangeSink
{
public:
    // The recorder outlives it.
    explicit RecordedLink(LinkRecorder& recorder)
        : recorder(recorder)
    {
    }
    void description_set(const StackDescription& description);

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

private:
    friend LinkRecorder;

    LinkRecorder& recorder;
    PcapngInterface port;
    int recording = 0;        // the last one that has the port
    std::uint32_t number = 0; // of the port in that one
};
