// What a command exchanges with its device, recorded into a capture.
#pragma once

#include "capture/capturewriter.h"
#include "cli/invocation.h"
#include "stack/exchangesink.h"
#include "stack/stacktext.h"

// What a capture says of the command that records, and of the port with that name.
PcapngSection record_section(const Invocation& invocation);
PcapngInterface record_port(const Invocation& invocation, const LinkDescription& link,
                            const QString& name);

// Times are those at which the command had written and read, so a read that waits for more until
// its time-out ends late. What a flush throws away is not in the capture.
class LinkRecord : public ExchangeSink
{
public:
    // Passes everything on to `log`, and records it when --record names a file; one that is there
    // goes on. Both arguments outlive it. Throws Failure when the file can't be written.
    LinkRecord(const Invocation& invocation, const LinkDescription& link, ExchangeSink& log);
    // Notes on stderr what is missing in the file.
    ~LinkRecord() override;

    void sent(const QByteArray& bytes, int result) override;
    void received(const QByteArray& bytes, int result) override;
    void note(const QString& text) override;

private:
    void record(CaptureRecord record);

    const Invocation& invocation;
    ExchangeSink& log;
    CaptureWriter writer;
    std::uint32_t port = 0;
};
