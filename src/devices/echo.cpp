#include "devices/echo.h"

#include <algorithm>

namespace {
constexpr int LIMIT = 65536;
}

Echo::Echo(const FaultSettings& faults)
    : faults(faults)
{
}

int Echo::room() const
{
    return LIMIT - held;
}

void Echo::receive(const QByteArray& bytes, Time now)
{
    QByteArray answer = bytes;
    faults.send_bytes(answer);
    if (answer.isEmpty())
        return;
    // Bytes never overtake one another, however late the earlier ones are.
    Time due = now + faults.next_delay();
    if (!waiting.empty())
        due = std::max(due, waiting.back().due);
    waiting.push_back({due, answer});
    held += int(answer.size());
}

QByteArray Echo::transmit(int most, Time now)
{
    const QByteArray bytes = take_due(waiting, most, now);
    held -= int(bytes.size());
    return bytes;
}

Time Echo::next_wake(Time) const
{
    return waiting.empty() ? NEVER : waiting.front().due;
}
