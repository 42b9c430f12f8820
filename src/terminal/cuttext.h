// Received text from chunks that come as the system reads them, cut anywhere.
#pragma once

#include <QByteArray>
#include <QString>

/// What to do at the end of a text to show one more chunk.
struct TextStep
{
    int replaced = 0; ///< characters to take away from the end
    QString text;     ///< to put there
};

/// Decodes chunk by chunk, in the local 8-bit encoding and up to the first zero byte of each. All
/// of a chunk shows at once, and the next one mends what a cut has left: the line feed of a CR LF,
/// of which the carriage return has broken the line already, and, where the encoding is UTF-8, the
/// replacement characters of a character's first bytes.
class CutText
{
public:
    /// Supposes that the text still ends with what the last step has put there.
    TextStep next(const QByteArray& chunk);
    /// The next chunk goes on from nothing.
    void forget() { cut.clear(); }

private:
    QByteArray cut; ///< a last carriage return, or the first bytes of a character
};
