// One recording of a CaptureWriter, from open to close: its queue, its file and its two threads.
#pragma once

#include "capture/capturefile.h"
#include "capture/capturequeue.h"

#include <atomic>
#include <thread>

class CaptureWriter::Recording
{
public:
    Recording(const QString& path, const Report& report, std::size_t queue_bytes);
    // After close, or after an open that failed.
    ~Recording();

    CaptureResult open(PcapngSection section, CaptureExisting existing);
    std::uint32_t add_port(const PcapngInterface& port);
    void record(CaptureRecord record);
    bool flush(std::chrono::milliseconds patience);
    CaptureResult close();

private:
    using Clock = std::chrono::steady_clock;

    // Blocks to be written at once, and where each of them ends.
    struct Batch
    {
        struct Mark
        {
            std::int64_t end;
            std::int64_t data; // bytes of the port in all blocks up to here
        };

        QByteArray blocks;
        std::vector<Mark> marks;

        void append(const CaptureQueue::Entry& entry);
        // The last block that ends within the first `size` bytes.
        Mark whole(std::int64_t size) const;
    };

    // What can fail, as bits.
    enum Trouble : unsigned { WRITE = 1, SYNC = 2 };

    void start_threads();
    void end_threads();
    void write_loop();
    void write_entries(const std::vector<CaptureQueue::Entry>& entries);
    void write(const Batch& batch);
    bool may_retry();
    void tell_of_loss();
    void sync_loop();
    void failing(Trouble trouble, const QString& reason);
    void working(Trouble trouble);
    std::uint64_t newly_dropped();
    void tell(CaptureReport::Kind kind, const QString& reason, std::uint64_t lost) const;

    const QString path;
    const Report& report;
    CaptureFile file;
    CaptureQueue queue;
    std::thread writer;
    std::thread syncer;

    std::mutex ports_mutex; // so that ports are in the queue in the order of their numbers
    std::atomic<std::uint32_t> port_count{0};
    std::atomic<std::uint64_t> handed_bytes{0};

    std::mutex mutex; // of all below
    std::condition_variable changed;
    unsigned troubles = 0;
    QString last_reason;
    bool behind = false;
    std::uint64_t told_bytes = 0; // of those that were dropped
    std::uint64_t done_entries = 0;
    std::uint64_t done_bytes = 0; // of ports, in the file
    std::uint64_t written = 0;    // blocks' bytes
    std::uint64_t synced = 0;     // of them
    Clock::time_point unsynced_since;
    std::optional<Clock::time_point> closing; // since when
    bool writer_done = false;
};
