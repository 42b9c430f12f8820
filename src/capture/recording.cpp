#include "capture/recording.h"

#include "capture/signalsblocked.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace {

constexpr int BATCH_BYTES = 256 * 1024;
constexpr int RECORD_BYTES_MAX = 64 * 1024; // of one block; readers keep a block in memory

} // namespace

void CaptureWriter::Recording::Batch::append(const CaptureQueue::Entry& entry)
{
    std::int64_t data = marks.empty() ? 0 : marks.back().data;
    if (const auto* const record = std::get_if<CaptureRecord>(&entry)) {
        blocks.append(packet_of(*record).build());
        data += record->bytes.size();
    } else {
        blocks.append(std::get<PcapngInterface>(entry).build());
    }
    marks.push_back({blocks.size(), data});
}

CaptureWriter::Recording::Batch::Mark
CaptureWriter::Recording::Batch::whole(std::int64_t size) const
{
    const auto beyond =
        std::upper_bound(marks.begin(), marks.end(), size,
                         [](std::int64_t size, const Mark& mark) { return size < mark.end; });
    return beyond == marks.begin() ? Mark{0, 0} : *std::prev(beyond);
}

CaptureWriter::Recording::Recording(const QString& path, const Report& report,
                                    std::size_t queue_bytes)
    : path(path)
    , report(report)
    , queue(queue_bytes)
{
}

CaptureWriter::Recording::~Recording() = default;

CaptureResult CaptureWriter::Recording::open(PcapngSection section, CaptureExisting existing)
{
    CaptureResult result = file.open(path, existing);
    if (!result)
        return result;
    if (result.cut > 0)
        section.comments.append(
            QStringLiteral("the file ended in a torn block: %1 bytes were cut off here")
                .arg(result.cut));
    const QByteArray header = section.build();
    const std::int64_t size = file.write(header.constData(), header.size());
    if (size < header.size()) {
        result.good = false;
        result.error = path + " can't be written: " + file.error();
        result.advice = "Is the disk full? Make room, or record to another one.";
        file.take_back(size);
        file.close();
        return result;
    }
    written = std::uint64_t(size);
    unsynced_since = Clock::now();
    try {
        start_threads();
    } catch (const std::system_error& refused) {
        end_threads();
        file.close();
        result.good = false;
        result.error = path + " can't be recorded: the system starts no thread (" +
                       QString::fromLocal8Bit(refused.what()) + ')';
        result.advice = "End other programs.";
    }
    return result;
}

void CaptureWriter::Recording::start_threads()
{
    const SignalsBlocked blocked;
    writer = std::thread([this] { write_loop(); });
    syncer = std::thread([this] { sync_loop(); });
}

// Those that have been started.
void CaptureWriter::Recording::end_threads()
{
    queue.stop();
    if (writer.joinable())
        writer.join();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        writer_done = true;
        changed.notify_all();
    }
    if (syncer.joinable())
        syncer.join();
}

std::uint32_t CaptureWriter::Recording::add_port(const PcapngInterface& port)
{
    const std::lock_guard<std::mutex> lock(ports_mutex);
    queue.put(port);
    return port_count++;
}

void CaptureWriter::Recording::record(CaptureRecord record)
{
    handed_bytes += std::uint64_t(record.bytes.size());
    if (record.port >= port_count)
        return;
    QByteArray rest = record.bytes;
    do {
        record.bytes = rest.size() > RECORD_BYTES_MAX ? rest.left(RECORD_BYTES_MAX) : rest;
        rest.remove(0, record.bytes.size());
        if (!queue.put(record))
            continue;
        std::unique_lock<std::mutex> lock(mutex);
        if (troubles != 0 || behind)
            continue; // has been reported
        behind = true;
        lock.unlock();
        tell(CaptureReport::Kind::Behind, {}, 0);
    } while (!rest.isEmpty());
}

bool CaptureWriter::Recording::flush(std::chrono::milliseconds patience)
{
    const std::uint64_t target = queue.count();
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, patience, [&] { return done_entries >= target; });
}

CaptureResult CaptureWriter::Recording::close()
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        closing = Clock::now();
        changed.notify_all();
    }
    end_threads();
    file.close();
    CaptureResult result;
    result.lost = handed_bytes - done_bytes;
    result.good = result.lost == 0 && troubles == 0;
    if (result.good)
        return result;
    result.error = QStringLiteral("%1 lacks %2 bytes").arg(path).arg(result.lost);
    if (troubles != 0)
        result.error += ": " + last_reason;
    result.advice = troubles != 0 ? "Make room on the disk, or record to another one."
                                  : "The disk was too slow: record to another one. The file has a "
                                    "record at each place where something is missing.";
    return result;
}

void CaptureWriter::Recording::write_loop()
{
    std::vector<CaptureQueue::Entry> entries;
    Clock::time_point not_before; // in the past
    while (queue.take(entries, not_before)) {
        not_before = Clock::now() + WRITE_WITHIN;
        tell_of_loss();
        write_entries(entries);
    }
}

void CaptureWriter::Recording::write_entries(const std::vector<CaptureQueue::Entry>& entries)
{
    Batch batch;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        batch.append(entries[i]);
        if (batch.blocks.size() < BATCH_BYTES && i + 1 < entries.size())
            continue;
        write(batch);
        batch = Batch();
    }
}

void CaptureWriter::Recording::write(const Batch& batch)
{
    std::int64_t done = 0;
    while (true) {
        done += file.write(batch.blocks.constData() + done, batch.blocks.size() - done);
        if (done == batch.blocks.size())
            break;
        failing(WRITE, file.error()); // first, as cutting a file may wait for the disk
        const std::int64_t whole = batch.whole(done).end;
        if (file.take_back(done - whole))
            done = whole;
        if (!may_retry())
            break;
    }
    if (done == batch.blocks.size())
        working(WRITE);
    const std::lock_guard<std::mutex> lock(mutex);
    if (synced == written)
        unsynced_since = Clock::now();
    written += std::uint64_t(done);
    done_bytes += std::uint64_t(batch.whole(done).data);
    done_entries += batch.marks.size();
    changed.notify_all();
}

// Waits; false when close has no patience any more.
bool CaptureWriter::Recording::may_retry()
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto again = Clock::now() + RETRY_AFTER;
    changed.wait_until(lock, again, [this] { return closing.has_value(); });
    if (!closing)
        return true;
    changed.wait_until(lock, again, [] { return false; });
    return Clock::now() < *closing + CLOSE_PATIENCE;
}

void CaptureWriter::Recording::tell_of_loss()
{
    std::unique_lock<std::mutex> lock(mutex);
    if (!behind)
        return;
    behind = false;
    const std::uint64_t lost = newly_dropped();
    lock.unlock();
    tell(CaptureReport::Kind::CaughtUp, {}, lost);
}

void CaptureWriter::Recording::sync_loop()
{
    std::unique_lock<std::mutex> lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return writer_done || synced < written; });
        if (synced == written)
            return;
        changed.wait_until(lock, unsynced_since + SYNC_WITHIN / 2, [this] { return writer_done; });
        const std::uint64_t target = written;
        unsynced_since = Clock::now(); // what is written from now on may miss this time
        lock.unlock();
        const QString error = file.sync();
        if (error.isEmpty())
            working(SYNC);
        else
            failing(SYNC, "what is written doesn't reach the disk: " + error);
        lock.lock();
        if (error.isEmpty())
            synced = target;
        else if (writer_done)
            return;
        else
            changed.wait_for(lock, RETRY_AFTER, [this] { return writer_done; });
    }
}

void CaptureWriter::Recording::failing(Trouble trouble, const QString& reason)
{
    queue.explain(reason);
    std::unique_lock<std::mutex> lock(mutex);
    const bool first = troubles == 0;
    troubles |= trouble;
    last_reason = reason;
    behind = false; // is part of this
    lock.unlock();
    if (!first)
        return;
    tell(CaptureReport::Kind::Failing, reason, 0);
}

void CaptureWriter::Recording::working(Trouble trouble)
{
    std::unique_lock<std::mutex> lock(mutex);
    const bool failed = (troubles & trouble) != 0;
    troubles &= ~trouble;
    if (!failed || troubles != 0)
        return;
    const std::uint64_t lost = newly_dropped();
    const QString reason = last_reason;
    lock.unlock();
    tell(CaptureReport::Kind::Recovered, {}, lost);
    // The system may have dropped what it could not write.
    if (trouble == SYNC && port_count > 0)
        queue.put(CaptureRecord::remark(capture_time_ns(),
                                        "what was recorded before this may not have reached the "
                                        "disk: " +
                                            reason));
}

// With the mutex held.
std::uint64_t CaptureWriter::Recording::newly_dropped()
{
    const std::uint64_t before = told_bytes;
    told_bytes = queue.dropped_bytes();
    return told_bytes - before;
}

void CaptureWriter::Recording::tell(CaptureReport::Kind kind, const QString& reason,
                                    std::uint64_t lost) const
{
    if (report)
        report({kind, path, reason, lost});
}
