#include "terminal/filesend.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

// What a chunk takes on the wire: short enough that stopping feels immediate, long enough for the
// system's own queue to bridge the way back to the event loop.
static constexpr int CHUNK_MS = 50;
static constexpr int BITS_PER_BYTE = 10; // with start and stop bit
static constexpr int SMALLEST_CHUNK = 64;
static constexpr int LARGEST_CHUNK = 16 * 1024;

FileSend::FileSend(const QString& path, int bits_per_second)
    : file(path)
    , chunk_size(qBound(SMALLEST_CHUNK, bits_per_second / BITS_PER_BYTE / (1000 / CHUNK_MS),
                        LARGEST_CHUNK))
{
}

bool FileSend::open()
{
    clock.start();
    // Opening a pipe or a device would wait for its other side.
    if (QFileInfo::exists(file.fileName()) && !QFileInfo(file.fileName()).isFile()) {
        refusal = QCoreApplication::translate("MainWindow", "not a file");
        return false;
    }
    return file.open(QIODevice::ReadOnly);
}

QByteArray FileSend::next_chunk()
{
    QByteArray chunk = file.read(chunk_size);
    done += chunk.size();
    return chunk;
}

int FileSend::permille() const
{
    return file.size() > 0 ? int(qMin(done, file.size()) * 1000 / file.size()) : 1000;
}

static QString progress_text_of(qint64 done, qint64 size, qint64 rate)
{
    const auto text = [](qint64 bytes) { return QLocale().formattedDataSize(bytes, 1); };
    return QString("%1 / %2, %3/s").arg(text(done), text(size), text(rate));
}

QString FileSend::progress_text() const
{
    const qint64 rate = done * 1000 / qMax(qint64(1), clock.elapsed());
    return progress_text_of(done, file.size(), rate);
}

QString FileSend::longest_progress_text()
{
    constexpr qint64 LONGEST = (1024 << 20) - (100 << 10); // "1,023.9 MiB"; the next is "1.0 GiB"
    return progress_text_of(LONGEST, LONGEST, LONGEST);
}
