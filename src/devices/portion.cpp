#include "devices/portion.h"

#include <algorithm>

QByteArray take_due(std::deque<Portion>& queue, int most, Time now)
{
    QByteArray bytes;
    while (!queue.empty() && queue.front().due <= now && bytes.size() < most) {
        Portion& front = queue.front();
        const int count = std::min(most - int(bytes.size()), int(front.bytes.size()));
        bytes += front.bytes.left(count);
        front.bytes.remove(0, count);
        if (front.bytes.isEmpty())
            queue.pop_front();
    }
    return bytes;
}
