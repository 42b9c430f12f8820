#include "filesend.h"

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

QString FileSend::progress_text() const
{
    const QLocale locale;
    const qint64 rate = done * 1000 / qMax(qint64(1), clock.elapsed());
    return QString("%1 / %2, %3/s")
        .arg(locale.formattedDataSize(done), locale.formattedDataSize(file.size()),
             locale.formattedDataSize(rate));
}
