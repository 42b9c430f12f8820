#include "linkcfg/inifile.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <algorithm>
#include <cctype>

namespace {

// Who makes a lock fills it within microseconds.
constexpr int EMPTY_LOCK_STALE_MS = 100;
constexpr char BOM_END = '\xBF'; // of UTF-8

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

// Whether a section lies inside another one, as [a/b] does. A value that looks like it does no
// harm.
bool may_have_nested_sections(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = "\n" + file.readAll();
    const auto separates = [](char c) { return c == '/' || c == '\\' || c == '%'; };
    auto at = std::find(text.begin(), text.end(), '[');
    while (at != text.end()) {
        const bool begins_a_line = std::isspace(uchar(at[-1])) != 0 || at[-1] == BOM_END;
        const auto end = begins_a_line ? std::find(at, text.end(), '\n') : at + 1;
        if (begins_a_line && std::any_of(at, end, separates))
            return true;
        at = std::find(end, text.end(), '[');
    }
    return false;
}

} // namespace

IniFile::IniFile(const QString& path)
    : QSettings(without_dead_lock(path), QSettings::IniFormat)
{
    // Qt reads a section for the first key that is asked for, but not [a] for the key "a/c" if
    // there is a section [a/b] too. The list of groups has it read all, which takes time with many
    // keys.
    if (may_have_nested_sections(path))
        childGroups();
}
