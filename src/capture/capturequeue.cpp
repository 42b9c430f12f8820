#include "capture/capturequeue.h"

#include <algorithm>

namespace {

// Bytes of memory, about.
std::size_t cost_of(const CaptureQueue::Entry& entry)
{
    const auto* const record = std::get_if<CaptureRecord>(&entry);
    const int text = record ? int(record->bytes.size()) + 2 * int(record->comment.size()) : 0;
    return sizeof entry + std::size_t(text);
}

// One record says so much at most.
constexpr std::uint64_t LOST_MAX = 1u << 31;

} // namespace

CaptureQueue::CaptureQueue(std::size_t limit)
    : limit(limit)
{
}

bool CaptureQueue::put(Entry entry)
{
    const std::size_t cost = cost_of(entry);
    const std::lock_guard<std::mutex> lock(mutex);
    const auto* const record = std::get_if<CaptureRecord>(&entry);
    const bool data = record && !record->bytes.isEmpty();
    const std::size_t room = data ? limit : limit + RESERVE;
    // Ports always find room: without its description the records of one belong to the next.
    if (record && !waiting.empty() && (used + cost > room || (data && !losses.empty())))
        return drop(*record);
    push_losses(); // before a remark that came after them
    push(std::move(entry), cost);
    return false;
}

bool CaptureQueue::take(std::vector<Entry>& entries,
                        std::chrono::steady_clock::time_point not_before)
{
    std::unique_lock<std::mutex> lock(mutex);
    filled.wait(lock, [this] { return stopped || !waiting.empty(); });
    filled.wait_until(lock, not_before, [this] { return stopped || used > limit / 4; });
    push_losses();
    entries.clear();
    entries.swap(waiting);
    used = 0;
    reason.clear();
    return !entries.empty();
}

void CaptureQueue::stop()
{
    const std::lock_guard<std::mutex> lock(mutex);
    stopped = true;
    filled.notify_all();
}

void CaptureQueue::explain(const QString& reason)
{
    const std::lock_guard<std::mutex> lock(mutex);
    this->reason = reason;
}

std::uint64_t CaptureQueue::dropped_bytes() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return dropped;
}

std::uint64_t CaptureQueue::count() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return pushed;
}

void CaptureQueue::push(Entry entry, std::size_t cost)
{
    const bool first = waiting.empty();
    const bool much = used <= limit / 4 && used + cost > limit / 4;
    used += cost;
    ++pushed;
    waiting.push_back(std::move(entry));
    if (first || much)
        filled.notify_all();
}

bool CaptureQueue::drop(const CaptureRecord& record)
{
    const bool first = losses.empty();
    const auto same = [&](const Loss& loss) {
        return loss.port == record.port && loss.direction == record.direction &&
               loss.bytes < LOST_MAX;
    };
    auto loss = std::find_if(losses.begin(), losses.end(), same);
    if (loss == losses.end())
        loss =
            losses.insert(losses.end(), Loss{record.port, record.direction, record.time_ns, 0, 0});
    loss->bytes += std::uint64_t(record.bytes.size());
    ++loss->records;
    dropped += std::uint64_t(record.bytes.size());
    return first;
}

void CaptureQueue::push_losses()
{
    std::vector<Loss> pushed_losses;
    pushed_losses.swap(losses);
    for (const Loss& loss : pushed_losses) {
        const QString text = QStringLiteral("%1 bytes in %2 records were not recorded: %3")
                                 .arg(QString::number(loss.bytes), QString::number(loss.records),
                                      reason.isEmpty() ? "the disk was too slow" : reason);
        CaptureRecord record = CaptureRecord::remark(loss.time_ns, text);
        record.event = CaptureEvent::DataLost;
        record.direction = loss.direction;
        record.port = loss.port;
        record.lost = std::uint32_t(loss.bytes);
        push(record, cost_of(record));
    }
}
