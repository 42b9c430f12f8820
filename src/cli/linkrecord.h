// What a command exchanges with its device, recorded into a capture.
#pragma once

#include "capture/capturewriter.h"
#include "cli/invocation.h"
#include "stack/exchangesink.h"
#include "stack/stacktext.h"

// What a capture says of the command that records, and of the port with that name, whose link was
// given as `text`.
PcapngSection record_section(const Invocation& invocation);
PcapngInterface record_port(const LinkDescription& link, const QString& text, const QString& name);

// The file of --record. Without that option it takes everything and keeps nothing.
class RecordFile
{
public:
    // A file that is there goes on. The invocation outlives it. Throws Failure when the file can't
    // be written.
    explicit RecordFile(Invocation& invocation);
    // Notes on stderr what is missing in the file, and has the program end with ExitCode::File
    // then.
    ~RecordFile();

    // Before a link of the invocation is used. Any thread may record what it exchanges.
    std::uint32_t add_port(const LinkDescription& link, const QString& text);
    void record(CaptureRecord record, std::uint32_t port);

private:
    Invocation& invocation;
    CaptureWriter writer;
};

// One link of it. Times are those at which the command had written and read, so a read that waits
// for more until its time-out ends late. What a flush throws away is not in the capture.
class LinkRecord : public ExchangeSink
{
public:
    // Passes everything on to `log`. It and the file outlive this.
    LinkRecord(RecordFile& file, const LinkDescription& link, const QString& text,
               ExchangeSink& log);

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

private:
    RecordFile& file;
    ExchangeSink& log;
    const std::uint32_t port;
};
