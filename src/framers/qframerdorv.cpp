#include "framers/qframerdorv.h"

#include "checksum/hextext.h"
#include "framers/framebuffer.h"
#include "links/qlink.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

struct Form
{
    const char* command = nullptr;
    const char* report = nullptr;
};

constexpr Form FORMS[] = {
    {"at+mactx", "+macrx"}, {"at+pmactx", "+pmacrx"}, {"at+radiotx", "+radiorx"}};
constexpr Form OTHER_FORM = {"at+mac_send", "+data"};
constexpr Form RAW_FORM = {"at+radiotxraw", "+radiorx"};

// What hex_read logs, by fault.
constexpr const char* HEX_FAULTS[] = {"", "dorv_r: cmd not match", "dorv_r: no rssi find",
                                      "dorv_r: no snr find"};

constexpr std::size_t SEPARATOR = 1;
constexpr std::size_t TEXT_CLOSING = 2;

const Form& form_of(int mode)
{
    return mode >= 0 && mode < int(std::size(FORMS)) ? FORMS[mode] : OTHER_FORM;
}

// hex_digit of each character, since a call for each would cost more than the rest.
const std::array<int, 256> DIGITS = [] {
    std::array<int, 256> digits{};
    for (std::size_t i = 0; i < digits.size(); ++i)
        digits[i] = hex_digit(char(i));
    return digits;
}();

// Stores at most size bytes and gives their number. Other characters than digits are skipped, and
// of an odd number the first is a byte of its own: as QByteArray::fromHex does, without its memory.
int hex_decode(std::string_view text, char* out, int size)
{
    bool high = true;
    for (const char c : text)
        high ^= DIGITS[std::uint8_t(c)] >= 0;
    int stored = 0;
    int byte = 0;
    for (const char c : text) {
        const int digit = DIGITS[std::uint8_t(c)];
        if (digit < 0)
            continue;
        byte = byte << 4 | digit;
        if (!high) {
            if (stored == size)
                break;
            out[stored++] = char(byte);
            byte = 0;
        }
        high = !high;
    }
    return stored;
}

QString text_of(std::string_view bytes)
{
    return QString::fromLatin1(bytes.data(), int(bytes.size()));
}

} // namespace

int DorvCommand::build(char* frame) const
{
    char* end = frame + command.copy(frame, command.size());
    *end++ = '=';
    end = std::to_chars(end, end + std::numeric_limits<int>::digits10 + 1, payload.size()).ptr;
    *end++ = '\r';
    end += payload.copy(end, payload.size());
    return int(end - frame);
}

DorvReport DorvReport::parse(std::string_view line, std::string_view name)
{
    const std::size_t start = line.find(name);
    if (start == line.npos)
        return {NO_NAME, {}};
    const std::size_t rssi_end = line.find(',', start + name.size() + SEPARATOR);
    if (rssi_end == line.npos)
        return {NO_RSSI, {}};
    const std::size_t snr_end = line.find(',', rssi_end + 1);
    if (snr_end == line.npos)
        return {NO_SNR, {}};
    return {NONE, line.substr(snr_end + 1)};
}

std::optional<int> DorvReport::parse_count(std::string_view line, std::string_view name)
{
    const std::size_t start = line.find(name);
    if (start == line.npos)
        return std::nullopt;
    const std::size_t after = start + name.size() + SEPARATOR;
    const std::size_t digits = line.find_first_not_of(" \t+", std::min(after, line.size()));
    if (digits == line.npos)
        return 0;
    int count = 0;
    const char* number = line.data() + digits;
    if (std::from_chars(number, line.data() + line.size(), count).ec ==
        std::errc::result_out_of_range)
        return *number == '-' ? 0 : std::numeric_limits<int>::max();
    return count;
}

QFramerDorv::QFramerDorv(QFramer* framer)
    : framer(framer)
{
}

void QFramerDorv::framer_set(QFramer* framer)
{
    this->framer = framer;
}

void QFramerDorv::link_set(QLink* link)
{
    this->link = link;
}

void QFramerDorv::verbose_set(bool verbose)
{
    this->verbose = verbose;
}

void QFramerDorv::raw_set(bool raw)
{
    this->raw = raw;
}

void QFramerDorv::mode_set(int mode)
{
    this->mode = mode;
}

void QFramerDorv::flush()
{
    if (framer)
        framer->flush();
}

int QFramerDorv::write(const char* buffer, int nbytes)
{
    return raw ? radio_raw_write(buffer, nbytes) : mode_write(buffer, nbytes);
}

int QFramerDorv::read(char* buffer, int nbytes)
{
    return raw ? radio_raw_read(buffer, nbytes) : mode_read(buffer, nbytes);
}

int QFramerDorv::mode_write(const char* buffer, int nbytes)
{
    return command_write(form_of(mode).command, buffer, nbytes);
}

int QFramerDorv::radio_raw_write(const char* buffer, int nbytes)
{
    return command_write(RAW_FORM.command, buffer, nbytes);
}

int QFramerDorv::mode_read(char* buffer, int nbytes)
{
    return counted_read(form_of(mode).report, buffer, nbytes);
}

int QFramerDorv::radio_raw_read(char* buffer, int nbytes)
{
    return hex_read(RAW_FORM.report, buffer, nbytes);
}

int QFramerDorv::command_write(const char* command, const char* buffer, int nbytes)
{
    return with_frame_buffer(
        nbytes, int(std::strlen(command)) + DorvCommand::OVERHEAD_MAX,
        [&](FrameBuffer& block) -> int {
            if (!block.data())
                return 0;
            const DorvCommand send{command, {buffer, std::size_t(nbytes)}};
            const int size = send.build(block.data());
            if (verbose)
                tell(QStringLiteral("dorv_w: %1 (%2)")
                         .arg(text_of(block.first(size - nbytes)), hex_text(buffer, nbytes)));
            if (!framer)
                return 0;
            framer->flush();
            if (framer->write(block.data(), size) != size)
                return 0;
            char reply[REPLY_SIZE];
            if (read_line(reply, REPLY_SIZE) <= 1)
                return 0;
            if (verbose)
                tell(QStringLiteral("dorv_r: (%1)").arg(text_of(reply)));
            return std::strstr(reply, "ok") ? nbytes : 0;
        });
}

// use(FrameBuffer&) with a report line in the buffer, and what it returns; 0 when none came.
template <typename Use> int QFramerDorv::with_report(int nbytes, const Use& use)
{
    return with_frame_buffer(nbytes, LINE_ROOM, [&](FrameBuffer& scratch) -> int {
        if (read_line(scratch.data(), scratch.size()) < 1)
            return 0;
        if (verbose)
            tell(QStringLiteral("dorv_r: %1").arg(text_of(scratch.data())));
        return use(scratch);
    });
}

int QFramerDorv::counted_read(const char* name, char* buffer, int nbytes)
{
    return with_report(nbytes, [&](FrameBuffer& scratch) {
        const int count =
            std::min(DorvReport::parse_count(scratch.data(), name).value_or(0), nbytes);
        if (count < 1 || !framer)
            return 0;
        const int received = std::min(framer->read(scratch.data(), count), count);
        return received < 1 ? 0 : int(scratch.first(received).copy(buffer, std::size_t(nbytes)));
    });
}

int QFramerDorv::hex_read(const char* name, char* buffer, int nbytes)
{
    return with_report(nbytes, [&](FrameBuffer& scratch) {
        const DorvReport report = DorvReport::parse(scratch.data(), name);
        if (report.fault != DorvReport::NONE) {
            tell(QLatin1String(HEX_FAULTS[report.fault]));
            return 0;
        }
        return hex_decode(report.payload, buffer, nbytes);
    });
}

int QFramerDorv::text_read(const char* name, char* buffer, int nbytes)
{
    return with_report(nbytes, [&](FrameBuffer& scratch) {
        std::string_view text = DorvReport::parse(scratch.data(), name).payload;
        if (text.size() <= TEXT_CLOSING)
            return 0;
        text.remove_suffix(TEXT_CLOSING);
        text.copy(buffer, std::size_t(nbytes));
        return int(text.size());
    });
}

// The result of the link's readline, with a NUL after that many bytes; 0 without link or buffer.
int QFramerDorv::read_line(char* line, int size)
{
    if (!link || !line)
        return 0;
    const int length = link->readline(line, size);
    line[std::clamp(length, 0, size - 1)] = '\0';
    return length;
}

void QFramerDorv::tell(const QString& text)
{
    if (verbose)
        emit log(text);
}
