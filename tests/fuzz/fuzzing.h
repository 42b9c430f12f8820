// What fuzz targets share.
#pragma once

#include <QByteArray>
#include <QFile>
#include <cstdint>
#include <cstdlib>

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

// An input: a byte for the target's own use, and the rest.
struct ChoiceInput
{
    std::uint8_t choice = 0;
    QByteArray rest;

    ChoiceInput(const std::uint8_t* data, std::size_t size)
    {
        if (size == 0)
            return;
        choice = data[0];
        rest = QByteArray(reinterpret_cast<const char*>(data) + 1, int(size - 1));
    }
};

inline void write_file(const QString& path, const QByteArray& content)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}
