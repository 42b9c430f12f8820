// The program memory of a simulated module, kept in a file if one is given.
#pragma once

#include <QByteArray>
#include <QString>

class RomImage
{
public:
    // Holds what the file holds, which is made if it is missing; an empty path keeps the image in
    // memory alone. Throws std::runtime_error, with a text for the user, like the operations below.
    RomImage(const QString& path, int capacity);

    int capacity() const { return most; }
    // Erased memory reads as 0xFF. The block lies within the capacity.
    QByteArray block(int offset, int size) const;
    void write(int offset, const QByteArray& bytes);
    void set_size(int size);

private:
    void store(int offset, const QByteArray& bytes);

    QString path;
    int most;
    QByteArray content;
};
