#include "monitor/logfile.h"

#include "capture/namedpipe.h"

#include <QFileInfo>
#include <ctime>
#include <utility>

namespace {
constexpr std::int64_t KILO = 1024;
constexpr int OPEN_LINE_MOST = 4096;   // a stream without line ends is logged too
constexpr int KEPT_MOST = 1024 * 1024; // minutes of a log at 115200

struct Unit
{
    const char* name;
    std::int64_t bytes;
    std::int64_t seconds;
};

constexpr Unit UNITS[] = {
    {"k", KILO, 0}, {"M", KILO* KILO, 0}, {"G", KILO* KILO* KILO, 0},
    {"min", 0, 60}, {"h", 0, 3600},       {"d", 0, std::int64_t(24) * 3600},
};

// How many periods of local time have passed; the day of a change of clocks has a shorter or longer
// one.
std::int64_t period_of(const QDateTime& time, std::int64_t seconds)
{
    return (time.toSecsSinceEpoch() + time.offsetFromUtc()) / seconds;
}

QString free_name(const QString& name)
{
    int number = 1;
    while (QFile::exists(name + '.' + QString::number(number)))
        ++number;
    return name + '.' + QString::number(number);
}
} // namespace

std::optional<Rotation> rotation_of(const QString& text)
{
    for (const Unit& unit : UNITS) {
        if (!text.endsWith(QLatin1String(unit.name)))
            continue;
        bool good = false;
        const int count = text.left(text.size() - int(qstrlen(unit.name))).toInt(&good);
        if (good && count > 0)
            return Rotation{count * unit.bytes, count * unit.seconds};
    }
    return std::nullopt;
}

QString log_name(const QString& pattern, const QDateTime& time)
{
    constexpr int LONGEST = 4096;
    const std::time_t seconds = std::time_t(time.toSecsSinceEpoch());
    const QByteArray format = QFile::encodeName(pattern);
    char name[LONGEST];
    const std::size_t size =
        std::strftime(name, sizeof name, format.constData(), std::localtime(&seconds));
    return size == 0 ? pattern : QFile::decodeName(QByteArray(name, int(size)));
}

LogFile::LogFile(const QString& pattern, const std::optional<Rotation>& rotation)
    : pattern(pattern)
    , rotation(rotation)
{
}

bool LogFile::open(const QDateTime& now)
{
    if (!open_file(log_name(pattern, now)))
        return false;
    size = file.size();
    if (rotation && rotation->seconds > 0)
        period = period_of(now, rotation->seconds);
    return true;
}

bool LogFile::write(const QByteArray& text, const QDateTime& now)
{
    const int end = int(text.lastIndexOf('\n')) + 1;
    if (end == 0) {
        open_line += text;
        return open_line.size() > OPEN_LINE_MOST ? flush() : kept.isEmpty();
    }
    const bool good = put(open_line + text.left(end));
    open_line = text.mid(end);
    return is_full(now) ? rotate(now) && good : good;
}

bool LogFile::flush()
{
    return put(std::exchange(open_line, {}));
}

bool LogFile::open_file(const QString& name)
{
    file.setFileName(name);
    QString pipe_reason;
    bool good = false;
    if (is_named_pipe(name)) {
        const int descriptor = open_named_pipe(name, pipe_reason);
        good =
            descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                                         QFileDevice::AutoCloseHandle);
    } else {
        // A device has no end to append to.
        const bool device = QFileInfo::exists(name) && !QFileInfo(name).isFile();
        good = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered |
                         (device ? QIODevice::WriteOnly : QIODevice::Append));
    }
    if (!good)
        reason = pipe_reason.isEmpty() ? file.errorString() : pipe_reason;
    return good;
}

bool LogFile::put(const QByteArray& text)
{
    if (lost > 0 || kept.size() > KEPT_MOST) {
        lost += text.size();
        lost_ever += text.size();
    } else {
        kept += text;
    }
    while (!kept.isEmpty() && file.isOpen()) {
        const std::int64_t count = file.write(kept);
        if (count <= 0) {
            reason = file.errorString();
            break;
        }
        size += count;
        kept.remove(0, int(count));
        if (kept.isEmpty() && lost > 0)
            kept = "[" + QByteArray::number(qlonglong(std::exchange(lost, 0))) +
                   " bytes are missing here: the log could not be written]\n";
    }
    return kept.isEmpty();
}

bool LogFile::is_full(const QDateTime& now) const
{
    if (!rotation)
        return false;
    return (rotation->bytes > 0 && size >= rotation->bytes) ||
           (rotation->seconds > 0 && period_of(now, rotation->seconds) != period);
}

bool LogFile::rotate(const QDateTime& now)
{
    const QString old = file.fileName();
    file.close();
    if (log_name(pattern, now) == old && !file.rename(free_name(old))) {
        reason = "the full file can't be renamed: " + file.errorString();
        return open(now) && false;
    }
    return open(now);
}
