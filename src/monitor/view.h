// What a session shows: received and sent bytes, and notes, as the bytes for a screen or a file.
#pragma once

#include "monitor/bytetext.h"
#include "monitor/silence.h"
#include "monitor/stamp.h"

#include <QString>

struct ViewOptions
{
    bool json = false; // an object a frame, a line each
    bool hex = false;
    bool raw = false;  // no byte is made harmless
    bool echo = false; // what is sent is shown too; in JSON it always is
    StampKind stamps = StampKind::Off;
    std::int64_t gap_ns = 0; // 0: text is not cut into frames, and the others by DEFAULT_GAP_NS
};

class View
{
public:
    // Longer than the pauses inside what one device sends in one go, those of USB adapters among
    // them.
    static constexpr std::int64_t DEFAULT_GAP_NS = 20 * NS_PER_MS;
    // A character that came in half is shown as bytes after so long.
    static constexpr std::int64_t HOLD_NS = 250 * NS_PER_MS;

    explicit View(const ViewOptions& options);

    const ViewOptions& options() const { return shown; }
    // From here on; what was open in the old form is finished.
    void change(const ViewOptions& options, QByteArray& out);

    void add(const Chunk& chunk, QByteArray& out);
    // A line of the program's own; an event in JSON.
    void note(const QString& text, std::int64_t time_ns, QByteArray& out);
    // What time alone brings to an end, and when that is.
    void expire(std::int64_t now_ns, QByteArray& out);
    std::optional<std::int64_t> deadline() const;
    void finish(QByteArray& out);
    // The screen was changed by others, so the next text begins a line.
    void screen_cleared() { line_start = true; }
    bool at_line_start() const { return line_start; }
    // What is put before something of that time, as the stamps are set.
    QByteArray stamp(std::int64_t time_ns);

private:
    bool by_frames() const { return shown.json || shown.hex; }
    void add_text(const Chunk& chunk, QByteArray& out);
    void add_lines(const Chunk& chunk, QByteArray& out);
    void show_frame(const Chunk& frame, QByteArray& out);
    void show_rows(const Chunk& frame, QByteArray& out);
    void finish_text(QByteArray& out);
    void end_frame(const Chunk& chunk, QByteArray& out);
    void end_line(QByteArray& out);

    ViewOptions shown;
    ByteText text;
    SilenceCut cut;
    bool line_start = true;
    Direction last_direction = Direction::In;
    std::int64_t last_ns = 0; // of the last chunk as text
    std::optional<std::int64_t> last_stamp;
};

// {"direction":"in","time_ns":1,"hex":"41 54","text":"AT"}, and with the verdict of a framer where
// it refused the frame: "valid":false. No line feed after it.
QByteArray json_line(const Chunk& frame);
QByteArray json_event(const QString& text, std::int64_t time_ns);
