// What people write, in the send area and on the command line, and the grid that shows received
// text.
#include "cli/cnetaddress.h"
#include "cli/dorvarguments.h"
#include "cli/failure.h"
#include "fuzzing.h"
#include "stack/numbermask.h"
#include "stack/stacktext.h"
#include "terminal/rowtable.h"
#include "terminal/sendtext.h"

namespace {

// What comes out is what precedes a mistake.
void typed(const QByteArray& text)
{
    require(text.contains('\\') || send_text_escaped(text).bytes == text);
    for (const auto parse : {send_text_escaped, send_text_hex}) {
        const SendText parsed = parse(text);
        if (parsed.error == SendText::NONE)
            continue;
        require(parsed.offset >= 0 && parsed.offset <= text.size());
        require(parsed.character == QChar::fromLatin1(text[qMin(parsed.offset, text.size() - 1)]));
        require(parse(text.left(parsed.offset)).bytes == parsed.bytes);
    }
}

// What parse(text) returns; nothing for a mistake, which lies in the text or right after it.
template <typename Parse> auto parsed(const QString& text, Parse parse)
{
    std::optional<decltype(parse(text))> value;
    try {
        value = parse(text);
    } catch (const TextError& error) {
        const auto& [message, column, length] = error;
        require(!message.isEmpty() && column >= 0 && column <= text.size() && length >= 1);
        require(column + length <= qMax(text.size(), column + 1));
        require(pointed_at(text, error).contains('^'));
    }
    return value;
}

// The first line is a link, what follows it framers.
void stack(const QByteArray& input)
{
    const QString text = QString::fromUtf8(input);
    const QString link_text = text.section('\n', 0, 0);
    const QString framers_text = text.section('\n', 1);
    const auto link = parsed(link_text, parse_link);
    require(!link || link_text.contains(link->kind == LinkKind::Serial ? link->port : link->host));
    const auto framers = parsed(framers_text, parse_framers);
    if (!framers)
        return;
    require(framers->size() == framers_text.count('+') + 1);
    for (const FramerDescription& framer : *framers)
        require(framer.number <= 0xFFFF && framer.prefix.size() <= 16);
    parsed(framers_text, [&](const Piece&) {
        check_fit(link.value_or(LinkDescription()), *framers);
        return true;
    });
}

// The text as each of the others; as a module's values it is a setting's name and a word a line.
void arguments(const QByteArray& input)
{
    const QString text = QString::fromUtf8(input);
    parsed(text, parse_hex_bytes);
    parsed(text, parse_cnet_address);
    parsed(text, [](const Piece& piece) { return parse_number_mask(piece, 9, 30); });
    const auto word = parsed(text, parse_cnet_word);
    require(!word || (word->index >= 0 && word->index <= 12));
    const DorvSetting* const setting = find_dorv_setting(text.section('\n', 0, 0));
    if (!setting)
        return;
    DorvValues values;
    try {
        values = parse_dorv_values(*setting, text.section('\n', 1).split('\n'));
    } catch (const Failure& failure) {
        return require(failure.code == ExitCode::Usage);
    }
    const DorvValues again = parse_dorv_values(*setting, dorv_words(*setting, values));
    require(again.numbers == values.numbers && again.bytes == values.bytes);
}

// The rows of a text that came in pieces are those of a new width. Each eighth character is left
// out, which parts surrogate pairs.
void rows(const QByteArray& input)
{
    const QString text = QString::fromUtf8(input);
    RowTable grown(1 + input.size() % 50), wrapped(100);
    for (int at = 0; at < text.size(); at += 8) {
        grown.append(text.mid(at, 7));
        wrapped.append(text.mid(at, 7));
    }
    wrapped.set_columns(grown.columns());
    require(grown.row_count() == wrapped.row_count());
    for (int row = 0; row < grown.row_count(); ++row)
        require(grown.row_end(row) == wrapped.row_end(row));
}

} // namespace

const QMap<QByteArray, Parser> PARSERS = {
    {"typed", typed}, {"stack", stack}, {"arguments", arguments}, {"rows", rows}};
