#include "monitor/portwait.h"

#include "monitor/stamp.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace {
constexpr std::uint32_t CHANGES = IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_DELETE | IN_MOVED_FROM;

// A folder that goes away with the last of its entries is watched from above.
QString nearest(const QString& folder)
{
    QString there = folder;
    while (!QFileInfo::exists(there) && there.size() > 1)
        there = QFileInfo(there).path();
    return there;
}
} // namespace

void PortWait::begin(const QStringList& folders, std::int64_t first_try_ns)
{
    end();
    active = true;
    blind = folders.isEmpty();
    next_try = first_try_ns;
    again_ms = AGAIN_MS;
    wanted = folders;
    if (blind)
        return;
    notify = FileDescriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    watch();
}

bool PortWait::watch()
{
    QStringList there;
    for (const QString& folder : std::as_const(wanted))
        there.append(nearest(folder));
    if (there == watched)
        return false;
    watched = there;
    for (const QString& folder : std::as_const(watched))
        if (::inotify_add_watch(notify.number(), QFile::encodeName(folder).constData(), CHANGES) <
            0)
            blind = true;
    return true;
}

void PortWait::end()
{
    active = false;
    next_try.reset();
    notify.close();
    watched.clear();
}

bool PortWait::is_time(std::int64_t now_ns)
{
    if (!active)
        return false;
    const bool changed = take_changes();
    const bool due = next_try && now_ns >= *next_try;
    if (changed)
        again_ms = AGAIN_MS;
    if (changed || due)
        next_try.reset();
    return changed || due;
}

void PortWait::failed(bool present, std::int64_t now_ns)
{
    if (!blind && watch())
        next_try = now_ns; // the port may have come into a new folder before it was watched
    else if (blind)
        next_try = now_ns + BLIND_MS * NS_PER_MS;
    else if (present)
        next_try = now_ns + again_ms * NS_PER_MS;
    again_ms = std::min(2 * again_ms, AGAIN_MOST_MS);
}

bool PortWait::take_changes()
{
    char events[4096];
    bool changed = false;
    while (notify.is_open() && ::read(notify.number(), events, sizeof events) > 0)
        changed = true;
    return changed;
}
