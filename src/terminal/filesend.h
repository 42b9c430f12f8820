// A file on its way out, a chunk at a time: never the whole of it in memory.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <cstdint>

class FileSend
{
public:
    // Chunks are sized for a port of this many bits/s.
    FileSend(const QString& path, int bits_per_second);

    // False, with error_string(), for a file that can't be read.
    bool open();
    // Empty at the end of the file, and after a failure to read on.
    QByteArray next_chunk();
    bool has_failed() const { return file.error() != QFileDevice::NoError; }
    QString error_string() const { return refusal.isEmpty() ? file.errorString() : refusal; }

    std::int64_t elapsed_ms() const { return clock.elapsed(); }
    // 0 to 1000; a file that grows on the way stays at 1000.
    int permille() const;
    // Bytes done, bytes in all and bytes each second, for people.
    QString progress_text() const;
    static QString longest_progress_text();

private:
    QFile file;
    QString refusal;
    const int chunk_size;
    std::int64_t done = 0;
    QElapsedTimer clock;
};
