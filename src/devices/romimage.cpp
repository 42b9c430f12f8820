#include "devices/romimage.h"

#include <QFile>
#include <stdexcept>

namespace {
[[noreturn]] void fail(const QFile& file)
{
    throw std::runtime_error(
        QStringLiteral("image %1: %2").arg(file.fileName(), file.errorString()).toStdString());
}
} // namespace

RomImage::RomImage(const QString& path, int capacity)
    : path(path)
    , most(capacity)
{
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        fail(file);
    if (file.size() > capacity)
        throw std::runtime_error(
            QStringLiteral("image %1 is larger than the memory of %2 bytes; see --rom")
                .arg(path, QString::number(capacity))
                .toStdString());
    content = file.readAll();
}

QByteArray RomImage::block(int offset, int size) const
{
    return content.mid(offset, size).leftJustified(size, '\xFF');
}

void RomImage::write(int offset, const QByteArray& bytes)
{
    const int old_size = int(content.size());
    const int end = offset + int(bytes.size());
    content = content.leftJustified(std::max(old_size, end), '\xFF');
    content.replace(offset, bytes.size(), bytes);
    const int first = std::min(offset, old_size);
    store(first, content.mid(first, end - first));
}

void RomImage::set_size(int size)
{
    if (size > content.size())
        return write(int(content.size()), block(int(content.size()), size - int(content.size())));
    content.truncate(size);
    QFile file(path);
    if (!path.isEmpty() && !file.resize(size))
        fail(file);
}

void RomImage::store(int offset, const QByteArray& bytes)
{
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || !file.seek(offset) ||
        file.write(bytes) != bytes.size() || !file.flush())
        fail(file);
}
