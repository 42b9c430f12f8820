// The thread that reads a wire, so that times are taken where bytes are read, however busy the
// screen is.
#pragma once

#include "monitor/inbox.h"
#include "monitor/wire.h"
#include "stack/framerstack.h"

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
};

// One session of one wire, from start to stop or to the end of the device.
class Reader
{
public:
    // All outlive it.
    Reader(Wire& wire, Inbox& inbox, const ReaderSettings& settings);
    ~Reader(); // stops

    // With framers the thread writes too: one payload, one frame.
    void send_frame(const QByteArray& payload);

private:
    void run();
    void run_stream();
    void run_frames();
    void read_frame(QFramer& top, DescriptorLink& link);
    bool is_stopping();
    void write_frames(QFramer& top, DescriptorLink& link);

    Wire& wire;
    Inbox& inbox;
    const ReaderSettings& settings;
    const int wake; // an eventfd: frames to send, or a stop
    std::mutex mutex;
    QVector<QByteArray> outgoing; // guarded
    bool stopping = false;        // guarded
    std::thread thread;
};

// The system's time, ns since 1970.
std::int64_t time_now_ns();
