// The thread that reads a wire, so that times are taken where bytes are read, however busy the
// screen is.
#pragma once

#include "monitor/inbox.h"
#include "monitor/wire.h"
#include "serialport/filedescriptor.h"
#include "stack/framerstack.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

class DescriptorLink;
class QFramer;

// The framers on a link. They may belong to the thread that makes them.
using MakeFramers = std::function<std::unique_ptr<FramerStack>(QLink&)>;

struct ReaderSettings
{
    MakeFramers framers;  // none: a stream of bytes
    int timeout_ms = 500; // framers: how long a write waits for its answer
    int gap_ms = 20;      // framers: the silence that ends a frame
    // Called on the reading thread for each read of the wire, and with framers for each write;
    // may be empty.
    std::function<void(const Chunk&)> record;
    std::mutex* order = nullptr; // without framers: of reads and writes, see Recorder
};

// One session of one wire, from start to stop or to the end of the device.
class Reader
{
public:
    // All outlive it. Throws std::system_error when the system starts no thread.
    Reader(Wire& wire, Inbox& inbox, const ReaderSettings& settings);
    ~Reader(); // stops
    // Waits for the end of a write.
    void stop();

    // With framers the thread writes too: one payload, one frame. The inbox gets what has gone out.
    void send_frame(const QByteArray& payload);
    // Bytes of payloads that have not gone out.
    int unsent() const { return unsent_bytes; }

private:
    void run();
    void run_stream();
    long read_recorded(QByteArray& buffer, Chunk& chunk);
    void run_frames();
    void read_frame(QFramer& top, DescriptorLink& link);
    void write_frames(QFramer& top, DescriptorLink& link);
    void write_frame(QFramer& top, const DescriptorLink& link, const QByteArray& payload);

    Wire& wire;
    Inbox& inbox;
    const ReaderSettings& settings;
    const FileDescriptor wake; // an eventfd: frames to send, or a stop
    std::mutex mutex;
    QVector<QByteArray> outgoing; // guarded
    bool stopping = false;        // guarded
    std::atomic<int> unsent_bytes{0};
    std::thread thread;
};
