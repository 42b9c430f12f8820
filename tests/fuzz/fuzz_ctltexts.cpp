// The other texts on the command line: bytes, addresses, channels, words, values of a module.

#include "cnetaddress.h"
#include "dorvsettings.h"
#include "failure.h"
#include "specfuzz.h"

namespace {

void number_mask(const QString& text, int least, int most)
{
    const auto parse = [&](const Piece& piece) { return parse_number_mask(piece, least, most); };
    const auto mask = parsed(text, parse);
    if (!mask)
        return;
    QStringList numbers;
    for (int number = least; number <= most; ++number) {
        if ((*mask >> (number - least) & 1) != 0)
            numbers += QString::number(number);
    }
    require(!numbers.isEmpty() && (std::uint64_t(*mask) >> (most - least + 1)) == 0);
    require(parse(numbers.join(',')) == *mask);
}

void hex_bytes(const QString& text)
{
    const auto bytes = parsed(text, parse_hex_bytes);
    if (bytes && !bytes->isEmpty())
        require(parse_hex_bytes(shown(*bytes)) == *bytes);
    const auto address = parsed(text, parse_cnet_address);
    if (address)
        require(address->bytes == *bytes && address->bytes.size() == (address->is_long() ? 8 : 2));
}

void cnet_word(const QString& text)
{
    const auto word = parsed(text, parse_cnet_word);
    if (word)
        require(word->index >= 0 && word->index <= 12 && word->bytes.size() == 4);
}

// One word a line behind the setting's name.
void module_values(const QString& text)
{
    const DorvSetting* const setting = find_dorv_setting(text.section('\n', 0, 0));
    if (!setting)
        return;
    try {
        const DorvValues values = parse_dorv_values(*setting, text.section('\n', 1).split('\n'));
        const DorvValues again = parse_dorv_values(*setting, dorv_words(*setting, values));
        require(again.numbers == values.numbers && again.bytes == values.bytes);
        for (int i = 0; i < values.numbers.size() && setting->fields[i].words.isEmpty(); ++i)
            require(values.numbers[i] >= setting->fields[i].least &&
                    values.numbers[i] <= setting->fields[i].most);
    } catch (const Failure& failure) {
        require(failure.code == ExitCode::Usage && !failure.what.isEmpty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const ChoiceInput input(data, size);
    const QString text = QString::fromUtf8(input.rest);
    switch (input.choice % 4) {
    case 0:
        number_mask(text, 9, 30);
        number_mask(text, 0, 2);
        break;
    case 1:
        hex_bytes(text);
        break;
    case 2:
        cnet_word(text);
        break;
    default:
        module_values(text);
    }
    return 0;
}
