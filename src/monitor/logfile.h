// The file that keeps what a session shows, under a name with the time, and its rotation.
#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>
#include <cstdint>
#include <optional>

// When a file is full. A number with k, M or G is bytes (of 1024), with min, h or d a time; the
// times begin at midnight.
struct Rotation
{
    std::int64_t bytes = 0;
    std::int64_t seconds = 0;
};
std::optional<Rotation> rotation_of(const QString& text);

// The pattern with what strftime puts for %Y, %m, %H and the like.
QString log_name(const QString& pattern, const QDateTime& time);

// Whole lines are in the file as soon as they are shown; the rest with close or flush.
class LogFile
{
public:
    LogFile(const QString& pattern, const std::optional<Rotation>& rotation);

    // Goes on at the end of a file that is there. False with fault().
    bool open(const QDateTime& now);
    // Changes to the next file at the end of a line, when it is time. A full file whose successor
    // has the same name becomes NAME.1, NAME.2 and so on. False when something could not be
    // written; it is kept, up to a limit, and tried again with what follows. Where lines are
    // missing, a line in the file says so.
    bool write(const QByteArray& text, const QDateTime& now);
    bool flush();
    // What found no place so far, in bytes.
    std::int64_t missing() const { return lost_ever + kept.size(); }
    QString name() const { return file.fileName(); }
    QString fault() const { return reason; }

private:
    bool is_full(const QDateTime& now) const;
    bool rotate(const QDateTime& now);
    bool put(const QByteArray& text);
    bool open_file(const QString& name);

    const QString pattern;
    const std::optional<Rotation> rotation;
    QFile file;
    std::int64_t size = 0;
    std::int64_t period = 0; // which one the file belongs to
    QByteArray open_line;
    QByteArray kept;            // for a disk that has room again
    std::int64_t lost = 0;      // after what is kept
    std::int64_t lost_ever = 0; // with what the file says is missing
    QString reason;
};
