#include "linkcfg/inifile.h"

#include <QFileInfo>
#include <QLockFile>

namespace {

// Who makes a lock fills it within microseconds.
constexpr int EMPTY_LOCK_STALE_MS = 100;

// Qt recognises the lock of a dead program by the process that it names. A kill between making
// and filling it leaves an empty one, for which a store would hold up the window for half a minute.
const QString& without_dead_lock(const QString& path)
{
    const QString lock_path = path + ".lock";
    const QFileInfo found(lock_path);
    if (found.exists() && found.size() == 0) {
        QLockFile lock(lock_path);
        lock.setStaleLockTime(EMPTY_LOCK_STALE_MS);
        lock.tryLock(2 * EMPTY_LOCK_STALE_MS);
    }
    return path;
}

} // namespace

IniFile::IniFile(const QString& path)
    : QSettings(without_dead_lock(path), QSettings::IniFormat)
{
}
