// tarnwickctl upgrade: new firmware for a module. What the loader reports becomes progress, notes
// and a verdict.
#include "checksum/hextext.h"
#include "cli/progress.h"
#include "cli/session.h"
#include "tools/loader.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <algorithm>

namespace {
const char RERUN[] = "Run the same command again: pages that have arrived aren't sent a second "
                     "time.";

constexpr struct
{
    LoaderReason reason;
    ExitCode code;
    const char* text;
} REASONS[] = {
    {LoaderReason::None, ExitCode::NoAnswer, "no attempt was made"},
    {LoaderReason::NoReply, ExitCode::NoAnswer, "no reply came in time"},
    {LoaderReason::BadReply, ExitCode::BadAnswer, "a reply was none to what was asked"},
    {LoaderReason::ZeroSize, ExitCode::Refused, "it reports a page size or an MTU of 0"},
    {LoaderReason::ShortPacket, ExitCode::Usage, "a packet has at least 4 bytes"},
    {LoaderReason::PacketRefused, ExitCode::Refused, "the module refused a packet"},
    {LoaderReason::CrcDiffers, ExitCode::Refused, "what it holds differs from the file"},
    {LoaderReason::FileNotOpened, ExitCode::File, "it can't be opened"},
    {LoaderReason::FileTooLarge, ExitCode::File, "it is larger than 2 GiB"},
    {LoaderReason::NoMemory, ExitCode::File, "there isn't enough memory for it"},
    {LoaderReason::FileCutShort, ExitCode::File, "it can't be read to its end"},
};

struct UpgradeSettings
{
    QString file;
    unsigned packet = 0; // bytes of the file in a packet at most
    unsigned retries = 0;
    unsigned interval_ms = 0;
    unsigned reset_wait_ms = 0;
    unsigned verify_wait_ms = 0;
};

struct UpgradeResult
{
    int file_size = 0;
    std::int64_t elapsed_ms = 0;
    QString soft_info; // of the device as it was found
    QString hard_info; // in hexadecimal
};

UpgradeSettings settings_of(const Invocation& invocation)
{
    constexpr int LONGEST_WAIT_MS = 600'000;
    UpgradeSettings settings;
    settings.file = invocation.argument(0, "FILE");
    invocation.expect_at_most(1);
    settings.packet = unsigned(invocation.number("packet", 4, 65535));
    settings.retries = unsigned(invocation.number("retries", 1, 1000));
    settings.interval_ms = unsigned(invocation.number("interval", 0, LONGEST_WAIT_MS));
    settings.reset_wait_ms = unsigned(invocation.number("reset-wait", 0, LONGEST_WAIT_MS));
    settings.verify_wait_ms = unsigned(invocation.number("verify-wait", 0, LONGEST_WAIT_MS));
    return settings;
}

// Throws Failure when there is no such file to read.
void check_firmware_file(const QString& file)
{
    const QFileInfo info(file);
    if (!info.exists())
        throw Failure{ExitCode::File, "there is no file " + file, "Check its name."};
    if (info.isDir())
        throw Failure{ExitCode::File, file + " is a folder", "Name a firmware file in it."};
    if (!info.isReadable())
        throw Failure{ExitCode::File, "the file " + file + " can't be read", "Check its rights."};
    // A module would take it: nothing to send, and nothing to verify.
    if (info.isFile() && info.size() == 0)
        throw Failure{ExitCode::File, "the file " + file + " is empty",
                      "Look how it was made; the module was left alone."};
}

class Upgrade
{
public:
    Upgrade(const UpgradeSettings& settings, Connection& connection, Console& console,
            Interrupts& interrupts)
        : settings(settings)
        , connection(connection)
        , console(console)
        , interrupts(interrupts)
        , loader(&connection.stack.top())
    {
    }

    // Runs an event loop until the loader has ended. Throws Failure unless the device holds the
    // file and has said so.
    UpgradeResult run();

private:
    void connect_signals();
    void note_phase(LoaderPhase phase);
    void note_soft_info(const QString& info);
    void show_progress(int file_size, int offset);
    Failure failure() const;

    const UpgradeSettings settings;
    Connection& connection;
    Console& console;
    Interrupts& interrupts;
    bool sending = false;
    QElapsedTimer run_clock;
    QElapsedTimer pages_clock;
    UpgradeResult result;
    Loader loader; // the first to go
};

UpgradeResult Upgrade::run()
{
    loader.filename_set(settings.file);
    loader.pack_len_set(settings.packet);
    loader.retry_count_set(settings.retries);
    loader.send_interval_set(settings.interval_ms);
    loader.reset_wait_ms_set(settings.reset_wait_ms);
    loader.verify_wait_ms_set(settings.verify_wait_ms);

    connect_signals();
    const auto start = [this] {
        run_clock.start();
        loader.upgrade_start();
    };
    connection.stack.run_worker(loader, start, [this] {
        // The run finds no link at its first question, and asks it once.
        loader.retry_count_set(0);
        loader.send_interval_set(0);
    });
    result.elapsed_ms = run_clock.elapsed();
    if (loader.outcome().ending != LoaderEnding::Upgraded)
        throw failure();
    show_progress(result.file_size, result.file_size);
    console.end_progress();
    return result;
}

// All but the interrupt comes on the loader's own thread, and what it leaves is read after its
// end.
void Upgrade::connect_signals()
{
    const auto on = [this](auto signal, auto receiver) {
        QObject::connect(&loader, signal, &loader, receiver, Qt::DirectConnection);
    };
    on(&Loader::log, [this](const QString& line) { connection.log.note(line); });
    on(&Loader::phase_begun, [this](LoaderPhase phase) { note_phase(phase); });
    on(&Loader::dev_soft_info_set, [this](const QString& info) { note_soft_info(info); });
    on(&Loader::dev_hard_info_set, [this](const std::uint8_t* info, int nbytes) {
        if (info)
            result.hard_info = hex_text(info, nbytes);
    });
    on(&Loader::upgrade_progress,
       [this](int file_size, int offset) { show_progress(file_size, offset); });
    QObject::connect(&interrupts, &Interrupts::interrupted, &loader, &Loader::abort);
}

void Upgrade::note_phase(LoaderPhase phase)
{
    switch (phase) {
    case LoaderPhase::EnterBoot:
        return console.note("The device starts its boot code ...");
    case LoaderPhase::Send:
        sending = true;
        pages_clock.start();
        return console.note("Sending the pages that differ ...");
    case LoaderPhase::Verify:
        return console.note("The device verifies the whole file ...");
    }
}

void Upgrade::note_soft_info(const QString& info)
{
    if (info == "N/A") // what the signal carries when there is none
        return;
    console.note("Device: " + info);
    if (result.soft_info.isEmpty())
        result.soft_info = info;
}

void Upgrade::show_progress(int file_size, int offset)
{
    result.file_size = file_size;
    if (!sending || file_size == 0)
        return;
    const Progress progress = {offset, file_size, pages_clock.elapsed()};
    console.progress(transfer_text(progress), progress.percent());
}

Failure Upgrade::failure() const
{
    const LoaderOutcome& outcome = loader.outcome();
    const auto& [reason, code, why] =
        *std::find_if(std::begin(REASONS), std::end(REASONS),
                      [&](const auto& row) { return row.reason == outcome.reason; });
    if (outcome.ending == LoaderEnding::Aborted)
        return {ExitCode::Interrupted, "the upgrade was stopped",
                QString("The device wasn't restarted and may wait in its boot code. ") + RERUN};
    if (outcome.ending == LoaderEnding::WrongFirmware)
        return {ExitCode::Refused,
                QStringLiteral("wrong firmware (%1) for module (%2)")
                    .arg(QFileInfo(settings.file).fileName(), outcome.module_name),
                "The file's name begins with the module's name and an underscore. Take the file "
                "that belongs to this module."};
    if (outcome.ending == LoaderEnding::FileNotRead)
        return {code, "the file " + settings.file + ": " + why, {}};
    const Stack& stack = connection.stack;
    const Failure lost = no_answer(stack, "the upgrade failed", {});
    if (lost.code == ExitCode::Link)
        return {lost.code, lost.what, lost.advice + ' ' + RERUN};
    if (reason == LoaderReason::ZeroSize)
        return {code, QString("the device can't be upgraded: ") + why, {}};

    switch (outcome.ending) {
    case LoaderEnding::NoInfo:
        return no_answer(stack, "the device doesn't say what it is",
                         "Is the device on? Check the port, its rate and format, and "
                         "--frame; -v shows every exchange.");
    case LoaderEnding::NoBootInfo:
        return no_answer(stack, "the device was told to start its boot code",
                         "It may take longer: try again with a --reset-wait of 5000.");
    case LoaderEnding::NotInBoot:
        return {ExitCode::Refused, "the device didn't start its boot code",
                "Try again; a longer --reset-wait may help."};
    case LoaderEnding::VerifyFailed:
        return {code, QString("the device doesn't say that it holds the file: ") + why,
                QString("It stays in its boot code. ") + RERUN};
    default:
        break;
    }
    if (outcome.refusals == settings.retries)
        return {ExitCode::Refused,
                QStringLiteral("the module refused all %1 attempts to send the packet at offset %2")
                    .arg(outcome.refusals)
                    .arg(outcome.offset),
                QStringLiteral("Maybe the file (%1 bytes) is larger than the module's memory. If "
                               "it isn't, try again with --packet 256.")
                    .arg(result.file_size)};
    return {code, QString("the transfer failed: ") + why,
            QString(RERUN) + " On a bad line, --packet 256 and a longer --timeout help."};
}

void run_upgrade(Invocation& invocation)
{
    const UpgradeSettings settings = settings_of(invocation);
    check_firmware_file(settings.file);
    Connection connection(invocation);
    const UpgradeResult result =
        Upgrade(settings, connection, invocation.console, invocation.interrupts).run();
    invocation.console.line(QStringLiteral("%1: %2 bytes sent and verified in %3 s")
                                .arg(settings.file, QString::number(result.file_size),
                                     QString::number(double(result.elapsed_ms) / 1000, 'f', 1)));
    invocation.console.result({{"result", "upgraded"},
                               {"file", settings.file},
                               {"bytes", result.file_size},
                               {"wire_bytes_sent", qint64(connection.stack.link().bytes_sent())},
                               {"seconds", double(result.elapsed_ms) / 1000},
                               {"device", result.soft_info},
                               {"hard_info", result.hard_info}});
}
} // namespace

QList<Command> upgrade_commands()
{
    return {
        {"upgrade",
         "FILE",
         "Put new firmware into a module.",
         "Puts new firmware into a module: starts its boot code, sends the pages of the file\n"
         "that differ from what the module holds, has the whole file verified, and restarts\n"
         "the module. The name of the file begins with the module's name and an underscore,\n"
         "as in M1_2.3.bin.\n\n"
         "Stopped or failed, it can simply be run again: pages that have arrived aren't sent\n"
         "a second time, and until the file is verified the module stays in its boot code.\n\n"
         "  tarnwickctl upgrade M1_2.3.bin --link serial:/dev/ttyUSB0 --frame crc16\n"
         "  tarnwickctl upgrade M1_2.3.bin --link tcp:10.0.0.5:4001 --frame rtu:1 --json",
         {{"packet", "Most bytes of the file in one packet; the device may take fewer.", "bytes",
           "1024"},
          {"retries", "How often a packet or a question is sent before giving up.", "count", "5"},
          {"interval", "Pause after each packet, for slow devices.", "ms", "0"},
          {"reset-wait", "How long the device takes to start its boot code.", "ms", "2000"},
          {"verify-wait", "How long the device takes to verify the whole file.", "ms", "1000"}},
         Needs::Stack,
         run_upgrade}};
}
