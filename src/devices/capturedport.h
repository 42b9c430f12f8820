// What went over one port of a capture, piece by piece.
#pragma once

#include "capture/capturereader.h"
#include "devices/module.h"

#include <QFile>
#include <deque>
#include <memory>
#include <optional>

struct CapturedPiece
{
    // A file may have any stamps. Two of these can be added.
    static constexpr std::chrono::nanoseconds MOST_TIME{INT64_MAX / 2};

    enum class Kind { Sent, Received, Missing };

    Kind kind = Kind::Missing;
    std::chrono::nanoseconds time{0}; // since the port's first record
    QByteArray bytes;                 // none of what is missing: bytes lost, or a damaged place
};

// How many bytes of a port the capture holds.
struct CapturedAmount
{
    QString port;
    std::int64_t sent = 0;
    std::int64_t received = 0;
};

// A clock that is set back in the recording costs the time since the record before; one that is set
// forward looks like a silence.
class CapturedPort
{
public:
    // Of the port with this name, or with a name that ends in it; without a name of the one port
    // that the capture has bytes of. Damage is reported in `notes` and read past. Throws
    // std::runtime_error when the file can't be read, is no capture, or has no such port.
    CapturedPort(const QString& file, const QString& port, const Journal& notes);

    const CapturedAmount& amount() const { return chosen; }
    QString file_name() const { return file.fileName(); }

    // Sent and received data, in the order of their times, and where some is missing. A recorder
    // with two threads may have written an answer before its request.
    std::optional<CapturedPiece> next();

private:
    void read_amounts(const Journal& notes);
    void count(const CaptureRecord& record);
    void choose(const QString& port);
    void read_block();
    void add(CapturedPiece::Kind kind, std::chrono::nanoseconds time, const QByteArray& bytes);
    void add(const CaptureRecord& record);
    std::chrono::nanoseconds time_of(std::int64_t time_ns);
    QString name_of(std::uint32_t port) const;

    QFile file;
    QVector<CapturedAmount> amounts;
    CapturedAmount chosen;
    std::unique_ptr<CaptureReader> reader;
    std::optional<std::int64_t> latest_ns; // by the recorder's clock
    std::chrono::nanoseconds latest{0};    // the same, as the time of a piece
    std::deque<CapturedPiece> waiting;     // by their times
    bool ended = false;
};
