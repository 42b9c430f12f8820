#include "monitor/logfile.h"

#include <ctime>

namespace {
constexpr std::int64_t KILO = 1024;

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
    file.setFileName(log_name(pattern, now));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        reason = file.errorString();
        return false;
    }
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
        return true;
    }
    const bool good = put(open_line + text.left(end));
    open_line = text.mid(end);
    return is_full(now) ? rotate(now) && good : good;
}

bool LogFile::flush()
{
    const QByteArray last = open_line;
    open_line.clear();
    return last.isEmpty() || put(last);
}

bool LogFile::put(const QByteArray& text)
{
    if (!file.isOpen())
        return false;
    const bool good = file.write(text) == text.size() && file.flush();
    size += text.size();
    if (!good)
        reason = file.errorString();
    return good;
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
