// What waits to be written: bounded, and with a record of loss for what found no room.
#pragma once

#include "capture/capturerecord.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <variant>
#include <vector>

class CaptureQueue
{
public:
    using Entry = std::variant<PcapngInterface, CaptureRecord>;

    // Beyond the limit there is room for records without bytes, such as remarks.
    static constexpr std::size_t RESERVE = std::size_t(1024) * 1024;

    explicit CaptureQueue(std::size_t limit);

    // Any thread. A record that finds no room is dropped and counted until what is here is taken.
    // True for the first that is dropped.
    bool put(Entry entry);
    // Waits until there is something, and for more of it until that time, and takes all, in order,
    // records of loss included. False when stopped and empty.
    bool take(std::vector<Entry>& entries, std::chrono::steady_clock::time_point not_before);
    // Nothing is waited for any more.
    void stop();
    // Why it is taken so late, for the next records of loss.
    void explain(const QString& reason);

    std::uint64_t dropped_bytes() const; // so far
    std::uint64_t count() const;         // entries that went in so far

private:
    struct Loss
    {
        std::uint32_t port;
        CaptureDirection direction;
        std::int64_t time_ns; // of the first record
        std::uint64_t bytes;
        std::uint64_t records;
    };

    void push(Entry entry, std::size_t cost);
    bool drop(const CaptureRecord& record);
    void push_losses();

    const std::size_t limit;
    mutable std::mutex mutex;
    std::condition_variable filled;
    std::vector<Entry> waiting;
    std::size_t used = 0;
    std::vector<Loss> losses;
    QString reason;
    std::uint64_t dropped = 0;
    std::uint64_t pushed = 0;
    bool stopped = false;
};
