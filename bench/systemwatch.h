// How long the system keeps a program waiting. No promise holds without a processor or a disk, so
// a run in which one of them was late is counted by itself.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <string>
#include <thread>
#include <unistd.h>

// May be in memory that a killed process shares, so that it outlives the kill.
struct SystemDelays
{
    // Longer waits of a thread are the system's fault.
    static constexpr std::int64_t BUSY_NS = 10'000'000;

    std::atomic<std::int64_t> processor_ns;
    std::atomic<std::int64_t> disk_ns;

    bool busy() const { return std::max(processor_ns, disk_ns) > BUSY_NS; }
    void reset() { processor_ns = disk_ns = 0; }
};

// Threads that look each millisecond: one whether it runs in time, one how long a write of a byte
// into a file beside the recorder's takes. They last until `stop`, which may be never.
class SystemWatch
{
public:
    SystemWatch(const std::string& folder, SystemDelays& delays)
        : processor([this, &delays] { watch_processor(delays); })
        , disk([this, &delays, folder] { watch_disk(folder + "/watch", delays); })
    {
    }
    ~SystemWatch()
    {
        stop = true;
        processor.join();
        disk.join();
    }

private:
    static std::int64_t now_ns()
    {
        return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    }

    static void note(std::atomic<std::int64_t>& most, std::int64_t since_ns)
    {
        most = std::max<std::int64_t>(most, now_ns() - since_ns);
    }

    void watch_processor(SystemDelays& delays) const
    {
        for (std::int64_t due_ns = now_ns(); !stop; due_ns = now_ns() + 1'000'000) {
            while (now_ns() < due_ns)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            note(delays.processor_ns, due_ns);
        }
    }

    void watch_disk(const std::string& path, SystemDelays& delays) const
    {
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        while (!stop) {
            const std::int64_t begun_ns = now_ns();
            // What it writes is of no interest.
            [[maybe_unused]] const ssize_t count = ::pwrite(file, "x", 1, 0);
            note(delays.disk_ns, begun_ns);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        ::close(file);
    }

    std::atomic<bool> stop{false};
    std::thread processor;
    std::thread disk;
};
