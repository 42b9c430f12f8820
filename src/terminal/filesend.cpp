#include "terminal/filesend.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

namespace {

// What a chunk takes on the wire: short enough that stopping feels immediate, long enough for the
// system's own queue to bridge the way back to the event loop.
constexpr int CHUNK_MS = 50;
constexpr int BITS_PER_BYTE = 10; // with start and stop bit
constexpr int SMALLEST_CHUNK = 64;
constexpr int LARGEST_CHUNK = 16 * 1024;

QString progress_text_of(std::int64_t done, std::int64_t size, std::int64_t rate)
{
    const auto text = [](std::int64_t bytes) { return QLocale().formattedDataSize(bytes, 1); };
    return QString("%1 / %2, %3/s").arg(text(done), text(size), text(rate));
}

} // namespace

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
    return file.size() > 0 ? int(qMin<qint64>(done, file.size()) * 1000 / file.size()) : 1000;
}

QString FileSend::progress_text() const
{
    const std::int64_t rate = done * 1000 / qMax<qint64>(1, clock.elapsed());
    return progress_text_of(done, file.size(), rate);
}

QString FileSend::longest_progress_text()
{
    constexpr std::int64_t LONGEST =
        (1024 << 20) - (100 << 10); // "1,023.9 MiB"; the next is "1.0 GiB"
    return progress_text_of(LONGEST, LONGEST, LONGEST);
}
