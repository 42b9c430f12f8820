// What received chunks and sent lines become in the receive area and in the capture file.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTime>

// What the user has chosen for received data.
struct ReceiveOptions
{
    bool frame_mode = false;   // each frame begins on a new line
    bool display_time = false; // each frame begins with a stamp
    bool hex_display = false;  // bytes are shown as hexadecimal digits
    int frame_interval = 0;    // ms; a longer silence begins a frame
};

struct ChunkText
{
    QString prefix;  // a line break, a stamp, both or neither
    QByteArray data; // the bytes as they came, or two digits and a blank for each
};

// `last` and `now` are the times of the chunk before and of this one, midnight between them
// included; `line_open` says that what is shown doesn't end in a line of sent text.
ChunkText chunk_text(const QByteArray& chunk, const ReceiveOptions& options, const QTime& last,
                     const QTime& now, bool line_open);

// The line that shows what the send area holds, without its end. A null `stamp` leaves that out.
QString sent_line(const QString& typed, const QTime& stamp, bool line_open);

// What to do at the end of a text to show one more chunk.
struct TextStep
{
    int replaced = 0; // characters to take away from the end
    QString text;     // to put there
};

// Decodes chunk by chunk, in the local 8-bit encoding and up to the first zero byte of each. All
// of a chunk shows at once, and the next one mends what a cut has left: the line feed of a CR LF,
// of which the carriage return has broken the line already, and, where the encoding is UTF-8, the
// replacement characters of a character's first bytes.
class CutText
{
public:
    // Supposes that the text still ends with what the last step has put there.
    TextStep next(const QByteArray& chunk);
    // The next chunk goes on from nothing.
    void forget() { cut.clear(); }

private:
    QByteArray cut; // a last carriage return, or the first bytes of a character
};
