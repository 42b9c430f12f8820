#include "monitor/reader.h"

#include "framers/qframer.h"
#include "monitor/descriptorlink.h"

#include <chrono>
#include <csignal>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {
constexpr int CHUNK = 65536; // a tty gives 4096 at most, a datagram may have as many
constexpr int FRAME_MAX = 65536;
} // namespace

std::int64_t time_now_ns()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

Reader::Reader(Wire& wire, Inbox& inbox, const ReaderSettings& settings)
    : wire(wire)
    , inbox(inbox)
    , settings(settings)
    , wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    inbox.restart();
    // Signals are for the thread that shows.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread = std::thread(&Reader::run, this);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Reader::~Reader()
{
    {
        const std::lock_guard lock(mutex);
        stopping = true;
    }
    inbox.stop();
    ::eventfd_write(wake, 1);
    thread.join();
    ::close(wake);
}

void Reader::send_frame(const QByteArray& payload)
{
    const std::lock_guard lock(mutex);
    outgoing.append(payload);
    ::eventfd_write(wake, 1);
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
    pollfd waiting[] = {{wire.descriptor(), POLLIN, 0}, {wake, POLLIN, 0}};
    QByteArray buffer(CHUNK, Qt::Uninitialized);
    for (;;) {
        if (::poll(waiting, 2, -1) < 0)
            continue;
        if (waiting[1].revents != 0)
            return;
        const ssize_t count = ::read(wire.descriptor(), buffer.data(), std::size_t(buffer.size()));
        if (count > 0) {
            Chunk chunk;
            chunk.time_ns = time_now_ns();
            chunk.bytes = QByteArray(buffer.constData(), int(count));
            if (settings.record)
                settings.record(chunk);
            inbox.put(std::move(chunk));
        } else if (wire.has_ended(count)) {
            inbox.put_end();
            return;
        }
    }
}

void Reader::run_frames()
{
    DescriptorLink link(wire, settings.timeout_ms, settings.gap_ms, settings.record);
    const std::unique_ptr<FramerStack> framers = settings.framers(link);
    QFramer& top = framers->top();
    pollfd waiting[] = {{wire.descriptor(), POLLIN, 0}, {wake, POLLIN, 0}};
    while (!link.has_gone()) {
        if (!link.has_waiting() && ::poll(waiting, 2, -1) < 0)
            continue;
        bool stop = false;
        if (waiting[1].revents != 0) {
            eventfd_t count = 0;
            ::eventfd_read(wake, &count);
            stop = is_stopping();
        }
        write_frames(top, link); // before the end too: the last reply may be among them
        if (stop)
            return;
        if (link.has_waiting() || waiting[0].revents != 0)
            read_frame(top, link);
    }
    inbox.put_end();
}

void Reader::write_frames(QFramer& top, DescriptorLink& link)
{
    QVector<QByteArray> payloads;
    {
        const std::lock_guard lock(mutex);
        payloads.swap(outgoing);
    }
    int left = int(payloads.size());
    for (const QByteArray& payload : payloads) {
        --left;
        // Some framers throw away what came before they write.
        if (link.bytes_available() > 0)
            read_frame(top, link);
        // A framer may not say that the link took only a part.
        const int result = top.write(payload.constData(), int(payload.size()));
        if ((result >= 0 && !link.has_failed()) || link.has_gone())
            continue;
        inbox.put_note("a frame was not sent: the device or the network takes nothing",
                       time_now_ns());
        if (left == 0 || !is_stopping())
            continue;
        // Each would take a time-out, and the end was asked for.
        inbox.put_note(QStringLiteral("%1 more were not sent").arg(left), time_now_ns());
        return;
    }
}

bool Reader::is_stopping()
{
    const std::lock_guard lock(mutex);
    return stopping;
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
