// Records what happens on ports into a pcapng file, on threads of its own.
#pragma once

#include "capture/capturerecord.h"
#include "capture/pcapng.h"

#include <QString>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

// What happens to the recording itself.
struct CaptureReport
{
    enum class Kind {
        Failing,   // nothing can be written: `reason`. It is tried again by itself.
        Recovered, // it is written again; `lost` bytes became records of loss
        Behind,    // the disk is too slow, and bytes are being dropped
        CaughtUp,  // ... no longer; `lost` bytes became records of loss
    };

    Kind kind;
    QString path;
    QString reason;         // the system's, of Failing
    std::uint64_t lost = 0; // bytes

    // One line for a person, with what to do.
    QString text() const;
};

// How open and close have ended.
struct CaptureResult
{
    bool good = false;
    QString error;          // what happened, to which file
    QString advice;         // what to do
    std::uint64_t lost = 0; // close: bytes that were handed over and are not in the file, in all
    std::int64_t cut = 0;   // open: bytes of a torn block that gave way to what is appended

    explicit operator bool() const { return good; }
};

// What to do when the file is there already. It is never overwritten.
enum class CaptureExisting {
    Refuse,
    // A new section after the last good block. A block that a kill has torn at the end is cut off,
    // and the new section's comment says how many bytes it had.
    Append,
};

// Writing never keeps the caller: a record goes into a queue of bounded size, one thread writes it
// within WRITE_WITHIN, so that it outlives this program, and another has the system bring it to the
// disk (fdatasync) so early that with a disk that takes less than half of SYNC_WITHIN for it, it is
// there after SYNC_WITHIN. When the queue is full, records are dropped and a record of lost data
// (CaptureEvent::DataLost) takes their place, one for each port and direction, with the number of
// bytes. When writing fails, on a full disk, the queue keeps what it can; writing is tried again
// every RETRY_AFTER. Blocks are whole in the file at any time, but for a kill in the middle of a
// write.
//
// What is no regular file, such as a named pipe that Wireshark reads, is written to as it is.
//
// One thread opens and closes; any thread may call the rest between.
class CaptureWriter
{
public:
    static constexpr std::chrono::milliseconds WRITE_WITHIN{2}; // few writes for many small reads
    static constexpr std::chrono::milliseconds SYNC_WITHIN{20};
    static constexpr std::chrono::milliseconds RETRY_AFTER{100};
    // How long close waits for a disk that takes nothing.
    static constexpr std::chrono::milliseconds CLOSE_PATIENCE{1000};
    // A minute and a half of a port at 921600 bit/s.
    static constexpr std::size_t QUEUE_BYTES = std::size_t(8) * 1024 * 1024;

    // Called soon after what it reports, on a thread of the writer or, when bytes begin to be
    // dropped, on that of who records. It may not call the writer.
    using Report = std::function<void(const CaptureReport&)>;

    explicit CaptureWriter(Report report = {}, std::size_t queue_bytes = QUEUE_BYTES);
    ~CaptureWriter(); // closes
    CaptureWriter(const CaptureWriter&) = delete;
    CaptureWriter& operator=(const CaptureWriter&) = delete;

    // Creates the file with its section header: what records, and as a comment what the stack is.
    // The file is this program's own until close.
    CaptureResult open(const QString& path, const PcapngSection& section,
                       CaptureExisting existing = CaptureExisting::Refuse);
    bool is_open() const;

    // Describes a port: name, settings as text, rate. Its number, for CaptureRecord::port.
    std::uint32_t add_port(const PcapngInterface& port);

    // The record's port is one that add_port gave. Very many bytes become several records.
    void record(CaptureRecord record);

    // Waits until all that was handed over before is written; false after the patience.
    bool flush(std::chrono::milliseconds patience);

    // Writes what waits and ends the file. Not good when something is missing in it.
    CaptureResult close();

private:
    class Recording;

    const Report report;
    const std::size_t queue_bytes;
    std::unique_ptr<Recording> recording;
};
