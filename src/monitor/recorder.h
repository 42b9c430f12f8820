// What a session records into a capture.
#pragma once

#include "capture/capturewriter.h"
#include "monitor/inbox.h"

#include <atomic>
#include <mutex>

struct RecordSettings
{
    QString path; // empty: nothing is recorded
    PcapngSection section;
    PcapngInterface interface;
};

// Any thread may call record and remark.
class Recorder
{
public:
    // What happens to the file is said in the inbox.
    explicit Recorder(Inbox& inbox);

    // A file that is there goes on.
    CaptureResult open(const RecordSettings& settings);
    void record(const Chunk& chunk);
    void remark(const QString& text);
    // LineStatus bits, for what is recorded from now on; below 0 for none.
    void set_lines(int status);
    CaptureResult close();

    // Held from before a read or a write of the wire until it is recorded: an answer may be read
    // while the write of its request still returns, and a capture is in order.
    std::mutex order;

private:
    CaptureWriter writer;
    std::atomic<bool> active{false};
    std::atomic<std::uint8_t> lines{0};
    std::uint32_t port = 0;
};
