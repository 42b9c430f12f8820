#include "monitor/reader.h"

#include "capture/capturerecord.h"
#include "capture/signalsblocked.h"
#include "framers/qframer.h"
#include "monitor/descriptorlink.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {
constexpr int CHUNK = 65536; // a tty gives 4096 at most, a datagram may have as many
constexpr int FRAME_MAX = 65536;
} // namespace

Reader::Reader(Wire& wire, Inbox& inbox, const ReaderSettings& settings)
    : wire(wire)
    , inbox(inbox)
    , settings(settings)
    , wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    inbox.restart();
    const SignalsBlocked blocked;
    thread = std::thread(&Reader::run, this);
}

Reader::~Reader()
{
    stop();
}

void Reader::stop()
{
    if (!thread.joinable())
        return;
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    inbox.stop();
    ::eventfd_write(wake.number(), 1);
    thread.join();
}

void Reader::send_frame(const QByteArray& payload)
{
    const std::lock_guard lock(mutex);
    outgoing.append(payload);
    unsent_bytes += int(payload.size());
    ::eventfd_write(wake.number(), 1);
}

void Reader::run()
{
    if (settings.framers)
        run_frames();
    else
        run_stream();
}

void Reader::run_stream()
{
    pollfd waiting[] = {{wire.descriptor(), POLLIN, 0}, {wake.number(), POLLIN, 0}};
    QByteArray buffer(CHUNK, Qt::Uninitialized);
    for (;;) {
        if (::poll(waiting, 2, -1) < 0)
            continue;
        if (waiting[1].revents != 0)
            return;
        Chunk chunk;
        const ssize_t count = read_recorded(buffer, chunk);
        if (count > 0) {
            inbox.put(std::move(chunk));
        } else if (wire.has_ended(count)) {
            inbox.put_end();
            return;
        }
    }
}

long Reader::read_recorded(QByteArray& buffer, Chunk& chunk)
{
    const std::lock_guard lock(*settings.order);
    const ssize_t count = ::read(wire.descriptor(), buffer.data(), std::size_t(buffer.size()));
    if (count <= 0)
        return count;
    chunk.time_ns = capture_time_ns();
    chunk.bytes = QByteArray(buffer.constData(), int(count));
    if (settings.record)
        settings.record(chunk);
    return count;
}

void Reader::run_frames()
{
    DescriptorLink link(wire, settings.timeout_ms, settings.gap_ms, settings.record);
    const std::unique_ptr<FramerStack> framers = settings.framers(link);
    QFramer& top = framers->top();
    pollfd waiting[] = {{wire.descriptor(), POLLIN, 0}, {wake.number(), POLLIN, 0}};
    while (!link.has_gone()) {
        if (!link.has_waiting() && ::poll(waiting, 2, -1) < 0)
            continue;
        if (waiting[1].revents != 0) {
            eventfd_t count = 0;
            ::eventfd_read(wake.number(), &count);
            const std::lock_guard lock(mutex);
            if (stopping)
                return;
        }
        if (link.has_waiting() || waiting[0].revents != 0)
            read_frame(top, link);
        write_frames(top, link);
    }
    inbox.put_end();
}

// A framer may throw away what waits when it writes, so that is read first.
void Reader::write_frames(QFramer& top, DescriptorLink& link)
{
    while (!link.has_gone() && link.bytes_available() <= 0) {
        QByteArray payload;
        {
            const std::lock_guard lock(mutex);
            if (stopping || outgoing.isEmpty())
                return;
            payload = outgoing.takeFirst();
        }
        write_frame(top, link, payload);
    }
}

void Reader::write_frame(QFramer& top, const DescriptorLink& link, const QByteArray& payload)
{
    Chunk frame;
    frame.time_ns = capture_time_ns(); // before, as the write may wait for an answer
    frame.bytes = payload;
    frame.direction = Direction::Out;
    frame.whole = true;
    // A framer may not say that the link took only a part.
    const bool sent =
        top.write(payload.constData(), int(payload.size())) >= 0 && !link.has_failed();
    if (!sent && link.has_gone())
        return;
    unsent_bytes -= int(payload.size());
    if (sent)
        inbox.put(std::move(frame));
    else
        inbox.put_note("a frame was not sent: the device or the network takes nothing",
                       frame.time_ns);
}

// What a framer refuses is shown as it came.
void Reader::read_frame(QFramer& top, DescriptorLink& link)
{
    Chunk frame;
    QByteArray payload(FRAME_MAX, Qt::Uninitialized);
    link.taken(frame.time_ns);
    const int count = top.read(payload.data(), int(payload.size()));
    const QByteArray as_it_came = link.taken(frame.time_ns);
    if (as_it_came.isEmpty())
        return;
    frame.whole = true;
    frame.damaged = count <= 0;
    frame.bytes = frame.damaged ? as_it_came : payload.left(count);
    inbox.put(std::move(frame));
}
