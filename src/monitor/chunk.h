// What travels through a session: bytes with the time at which they were read or written.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

enum class Direction { In, Out };

struct Chunk
{
    std::int64_t time_ns = 0; // since 1970, UTC: when the bytes were read, or had been written
    QByteArray bytes;
    Direction direction = Direction::In;
    bool whole = false;   // a frame that a framer has found, not a piece of a stream
    bool damaged = false; // whole, but the framer refused it; the bytes are as they came
    QString note;         // instead of bytes: what the program has to say
};
