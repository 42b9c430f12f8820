// tarnwickctl checksum: the check values that devices and frames use.
#include "cli/failure.h"
#include "cli/invocation.h"

#include "checksum/crc.h"
#include "checksum/md5.h"
#include "checksum/sums.h"

namespace {
QByteArray big_endian(std::uint32_t value, int size)
{
    QByteArray bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes.append(char(value >> (8 * i)));
    return bytes;
}

struct Algorithm
{
    const char* name = nullptr;
    const char* meaning = nullptr;
    QByteArray (*value)(const char* data, int size) = nullptr; // most significant byte first
};

constexpr Algorithm ALGORITHMS[] = {
    {"sum8", "sum of the bytes",
     [](const char* data, int size) { return big_endian(sum8(data, unsigned(size)), 1); }},
    {"xor8", "all bytes XORed",
     [](const char* data, int size) { return big_endian(xor8(data, unsigned(size)), 1); }},
    {"sum16", "sum of the bytes taken as signed",
     [](const char* data, int size) { return big_endian(sum16(data, unsigned(size)), 2); }},
    {"crc8", "CRC-8/MAXIM-DOW",
     [](const char* data, int size) { return big_endian(crc8(data, unsigned(size)), 1); }},
    {"crc16", "CRC-16/MODBUS; frames carry its low byte first",
     [](const char* data, int size) { return big_endian(crc16(data, size), 2); }},
    {"crc32", "CRC-32/JAMCRC, as boot codes check it",
     [](const char* data, int size) {
         return big_endian(crc32(data, unsigned(size), CRC32_START), 4);
     }},
    {"crc32inv", "the same inverted: the common CRC-32",
     [](const char* data, int size) {
         return big_endian(~crc32(data, unsigned(size), CRC32_START), 4);
     }},
    {"md5", "MD5",
     [](const char* data, int size) {
         QByteArray digest(16, '\0');
         Md5Context context;
         md5_init(&context);
         md5_update(&context, data, unsigned(size));
         md5_final(digest.data(), &context);
         return digest;
     }},
};

void run_checksum(Invocation& invocation)
{
    const QByteArray data = invocation.payload(0);
    invocation.expect_at_most(invocation.has("hex") || invocation.has("text") ? 0 : 1);
    const QString wanted = invocation.text("only");
    QJsonObject sums;
    for (const Algorithm& algorithm : ALGORITHMS) {
        if (!wanted.isEmpty() && wanted != algorithm.name)
            continue;
        const QString value =
            QString::fromLatin1(algorithm.value(data.constData(), int(data.size())).toHex())
                .toUpper();
        sums[algorithm.name] = value;
        invocation.console.line(wanted.isEmpty() ? QString(algorithm.name).leftJustified(9) +
                                                       value.leftJustified(34) + algorithm.meaning
                                                 : value);
    }
    if (sums.isEmpty())
        throw usage_failure("--only " + wanted + ": there is no such check value",
                            "Without --only all of them are shown.");
    invocation.console.result({{"bytes", int(data.size())}, {"checksums", sums}});
}
} // namespace

QList<Command> checksum_commands()
{
    QList<QCommandLineOption> options = payload_options();
    options.append(QCommandLineOption("only", "Show this value alone, such as crc16.", "name"));
    return {{"checksum", "[FILE]", "Work out check values of a file or of bytes.",
             "Works out the check values that devices and frames use, of a file, of standard\n"
             "input (no file, or -), or of bytes given as --hex or --text.\n\n"
             "  tarnwickctl checksum M1_2.3.bin\n"
             "  tarnwickctl checksum --hex '01 03 00 00 00 02' --only crc16",
             options, Needs::Nothing, run_checksum}};
}
