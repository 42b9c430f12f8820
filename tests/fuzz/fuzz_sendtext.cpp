// Text typed in the send area, in both modes: what comes out, typed again, gives the same bytes,
// and a mistake is told at its very place.

#include "fuzzing.h"
#include "hextext.h"
#include "sendtext.h"

namespace {

QByteArray typed_with_escapes(const QByteArray& bytes)
{
    QByteArray text;
    for (const char byte : bytes) {
        const int known = QByteArray("\r\n\t\a\b\f\v\\'\"\0", 11).indexOf(byte);
        text += known < 0 ? QByteArray(1, byte) : QByteArray("\\") + "rntabfv\\'\"0"[known];
    }
    return text;
}

template <typename Parse>
void check(const QByteArray& text, Parse parse, const QByteArray& again, int lead)
{
    const SendText parsed = parse(text);
    const SendText back = parse(again);
    require(back.error == SendText::NONE && back.bytes == parsed.bytes);
    if (parsed.error == SendText::NONE)
        return;
    const bool at_end = parsed.error == SendText::ESCAPE_AT_END;
    require(parsed.offset >= lead && parsed.offset < text.size() + (at_end ? 1 : 0));
    require(parsed.character ==
            QChar::fromLatin1(text[at_end ? parsed.offset - 1 : parsed.offset]));
    const SendText front = parse(text.left(parsed.offset - lead));
    require(front.error == SendText::NONE && front.bytes == parsed.bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), int(size));
    check(text, send_text_escaped, typed_with_escapes(send_text_escaped(text).bytes), 1);
    const QByteArray bytes = send_text_hex(text).bytes;
    check(text, send_text_hex, hex_text(bytes.constData(), bytes.size()).toLatin1(), 0);
    require(send_text_escaped(typed_with_escapes(text)).bytes == text);
    return 0;
}
