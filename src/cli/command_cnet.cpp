// tarnwickctl cnet info, get, set, value: settings of cnet devices.
#include "cli/cnetaddress.h"
#include "cli/session.h"
#include "cli/typedargument.h"

#include <QFile>
#include <QJsonArray>
#include <algorithm>
#include <array>

namespace {
using Block = std::array<std::uint32_t, CNET_BLOCK_WORDS>; // as it lies in memory and travels

QByteArray bytes_of(const Block& block)
{
    return {reinterpret_cast<const char*>(block.data()), CNET_BLOCK_SIZE};
}

Block block_of(const QByteArray& bytes)
{
    Block block;
    std::copy_n(bytes.constData(), CNET_BLOCK_SIZE, reinterpret_cast<char*>(block.data()));
    return block;
}

CnetAddress address_of(const Invocation& invocation)
{
    return parse_argument("ADDRESS", invocation.argument(0, "ADDRESS"), parse_cnet_address);
}

// For devices on the air: the local device goes where --channel and --rate say, if they do.
void tune_as_asked(CnetSession& session, const Invocation& invocation)
{
    if (invocation.has("channel") != invocation.has("rate"))
        throw usage_failure("--channel and --rate go together");
    if (!invocation.has("channel"))
        return;
    constexpr int LAST_CHANNEL = CNET_FIRST_CHANNEL + CNET_CHANNELS - 1;
    const auto channel = invocation.number("channel", CNET_FIRST_CHANNEL, LAST_CHANNEL);
    const auto rate = invocation.number("rate", 0, CNET_RATES - 1);
    if (session.cfg.local_chan_baud_set(int(channel), int(rate)) != 0)
        throw session.failure("the local device can't be tuned");
}

// The link open, and the local device tuned if that is asked.
struct OpenSession : CnetSession
{
    explicit OpenSession(Invocation& invocation)
        : CnetSession(invocation)
    {
        connection.stack.open();
        tune_as_asked(*this, invocation);
    }
};

struct Configuration
{
    Block block = {};
    QByteArray extra = QByteArray(CNET_EXTRA_SIZE, '\0');
};

Configuration read_configuration(CnetSession& session, const CnetAddress& address)
{
    Configuration read;
    const char* bytes = address.bytes.constData();
    const int result =
        address.is_long()
            ? session.cfg.remote_cfg_get_ext(bytes, read.block.data(), read.extra.data())
            : session.cfg.remote_cfg_get(bytes, read.block.data(), read.extra.data());
    if (result <= 0)
        throw session.failure("the settings of " + shown(address.bytes) + " can't be read");
    return read;
}

void run_info(Invocation& invocation)
{
    invocation.expect_at_most(0);
    const bool is_long = invocation.has("long");
    const CnetCommand& command = is_long ? cnet::LOCAL_INFO_GET_EXT : cnet::LOCAL_INFO_GET;
    CnetSession session(invocation);
    session.connection.stack.open();
    QByteArray info(command.response, '\0');
    is_long ? session.cfg.local_info_get_ext(info.data()) : session.cfg.local_info_get(info.data());
    if (session.cfg.outcome() != CnetOutcome::Done)
        throw session.failure("the local device doesn't say what it is");
    invocation.console.line(shown(info));
    invocation.console.result({{"info", shown(info)}});
}

void run_get(Invocation& invocation)
{
    const CnetAddress address = address_of(invocation);
    invocation.expect_at_most(1);
    OpenSession session(invocation);
    const Configuration read = read_configuration(session, address);
    const QByteArray block = bytes_of(read.block);
    if (invocation.has("output")) {
        QFile file(invocation.text("output"));
        if (!file.open(QIODevice::WriteOnly) || file.write(block) != block.size() || !file.flush())
            throw Failure{ExitCode::File,
                          "the file " + file.fileName() +
                              " can't be written: " + file.errorString(),
                          {}};
    }
    for (int i = 0; i < CNET_BLOCK_WORDS; ++i)
        invocation.console.line(QStringLiteral("word %1  ").arg(i, 2) + shown(block.mid(i * 4, 4)));
    invocation.console.line("extra    " + shown(read.extra));
    invocation.console.result(
        {{"address", shown(address.bytes)}, {"block", shown(block)}, {"extra", shown(read.extra)}});
}

QString wrong_size(const QString& size)
{
    return QStringLiteral("the settings of a device have %1 bytes, not %2")
        .arg(CNET_BLOCK_SIZE)
        .arg(size);
}

QByteArray block_from_file(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{
            ExitCode::File, "the file " + name + " can't be read: " + file.errorString(), {}};
    QByteArray bytes = file.read(CNET_BLOCK_SIZE + 1);
    if (bytes.size() == CNET_BLOCK_SIZE)
        return bytes;
    const std::int64_t size = bytes.size() < CNET_BLOCK_SIZE ? bytes.size() : file.size();
    const QString what = size < bytes.size() // a pipe has no size
                             ? QString("the settings of a device have %1 bytes, and there are more")
                                   .arg(CNET_BLOCK_SIZE)
                             : wrong_size(QString::number(size));
    throw usage_failure(what + " in " + name,
                        "`tarnwickctl cnet get ADDRESS --output FILE` makes such a file.");
}

// The block to write: given whole, or nothing when words of the device's own are to change.
std::optional<Block> given_block(const Invocation& invocation)
{
    const int ways =
        int(invocation.has("block")) + int(invocation.has("file")) + int(invocation.has("word"));
    if (ways != 1)
        throw usage_failure("what to set is given by one of --block, --file and --word",
                            "`tarnwickctl cnet get` shows what the device holds.");
    if (invocation.has("word"))
        return std::nullopt;
    const QByteArray bytes =
        invocation.has("block")
            ? parse_argument("--block", invocation.text("block"), parse_hex_bytes)
            : block_from_file(invocation.text("file"));
    if (bytes.size() != CNET_BLOCK_SIZE)
        throw usage_failure(wrong_size(QString::number(bytes.size())));
    return block_of(bytes);
}

Block changed_block(CnetSession& session, const CnetAddress& address,
                    const QVector<CnetWord>& words)
{
    QByteArray bytes = bytes_of(read_configuration(session, address).block);
    for (const CnetWord& word : words)
        bytes.replace(word.index * 4, 4, word.bytes);
    return block_of(bytes);
}

void run_set(Invocation& invocation)
{
    const CnetAddress address = address_of(invocation);
    invocation.expect_at_most(1);
    const std::optional<Block> given = given_block(invocation);
    QVector<CnetWord> words;
    for (const QString& text : invocation.texts("word"))
        words.append(parse_argument("--word", text, parse_cnet_word));

    OpenSession session(invocation);
    const Block block = given ? *given : changed_block(session, address, words);
    invocation.interrupts.check();
    const char* bytes = address.bytes.constData();
    const int result = address.is_long() ? session.cfg.remote_cfg_set_ext(bytes, block.data())
                                         : session.cfg.remote_cfg_set(bytes, block.data());
    if (result != 0)
        throw session.failure("the settings of " + shown(address.bytes));
    invocation.console.line("set");
    invocation.console.result(
        {{"address", shown(address.bytes)}, {"block", shown(bytes_of(block))}});
}

void run_value(Invocation& invocation)
{
    const CnetAddress address = address_of(invocation);
    invocation.expect_at_most(1);
    OpenSession session(invocation);
    int second = 0;
    const char* bytes = address.bytes.constData();
    const int value = address.is_long() ? session.cfg.remote_value_get_ext(bytes, &second)
                                        : session.cfg.remote_value_get(bytes);
    if (session.cfg.outcome() != CnetOutcome::Done)
        throw session.failure("the value of " + shown(address.bytes) + " can't be read");
    QJsonArray values = {value};
    if (address.is_long())
        values.append(second);
    invocation.console.line(address.is_long() ? QStringLiteral("%1 %2").arg(value).arg(second)
                                              : QString::number(value));
    invocation.console.result({{"address", shown(address.bytes)}, {"values", values}});
}

const QList<QCommandLineOption> TUNING = {
    {"channel", "Tune the local device to this channel first, 9 to 30.", "channel"},
    {"rate", "And to this rate: 0 for 250 kbps, 1 for 500 kbps, 2 for 1 Mbps.", "rate"},
};
const char ABOUT_ADDRESS[] = "ADDRESS has 4 hexadecimal digits, or 16 for devices with long "
                             "addresses.";
} // namespace

QList<Command> cnet_commands()
{
    const QString about = ABOUT_ADDRESS;
    QList<QCommandLineOption> get = TUNING;
    get.append(QCommandLineOption(
        "output", "Write the 52 bytes into a file too, for cnet set --file.", "file"));
    const QList<QCommandLineOption> set =
        TUNING +
        QList<QCommandLineOption>{
            {"word", "Change one of the 13 words, as in 3=00112233; may be given again.", "n=hex"},
            {"block", "Write all 52 bytes, in hexadecimal.", "bytes"},
            {"file", "Write all 52 bytes of a file.", "file"}};
    const QList<Command> settings = {
        {"cnet info",
         "",
         "Ask the local cnet device what it is.",
         "Prints the information record of the device on the link, in hexadecimal.\n\n"
         "  tarnwickctl cnet info --link serial:/dev/ttyUSB0,9600",
         {{"long", "Ask for the record of devices with long addresses, 15 bytes."}},
         Needs::Link,
         run_info},
        {"cnet get", "ADDRESS", "Read the settings of a cnet device.",
         "Reads the settings of a device on the air: 13 words and 5 bytes that follow them.\n" +
             about +
             "\n\n  tarnwickctl cnet get 1234 --link serial:/dev/ttyUSB0 --channel 9 --rate 0",
         get, Needs::Link, run_get},
        {"cnet set", "ADDRESS", "Write the settings of a cnet device.",
         "Writes the settings of a device on the air, whole or word by word; with --word they are\n"
         "read first. " +
             about + "\n\n  tarnwickctl cnet set 1234 --word 3=00112233 --link serial:/dev/ttyUSB0",
         set, Needs::Link, run_set},
    };
    const QList<Command> value = {
        {"cnet value", "ADDRESS", "Read the measured value of a cnet device.",
         "Reads the value that a device reports of itself, a number from -128 to 127, and two of\n"
         "them from devices with long addresses.\n" +
             about,
         TUNING, Needs::Link, run_value},
    };
    return settings + cnet_search_commands() + value;
}
