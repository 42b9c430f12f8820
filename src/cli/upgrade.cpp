#include "upgrade.h"

#include "failure.h"
#include "hextext.h"
#include "loader.h"
#include "progress.h"

#include <QFileInfo>

namespace {
const char RERUN[] = "Run the same command again: pages that have arrived aren't sent a second "
                     "time.";

// The loader's own words, by which a run's end is known.
const char BOX_DONE[] = "File sent and verified OK";
const char BOX_WRONG_FIRMWARE[] = "wrong firmware";
const char BOX_NO_INFO[] = "Get device infomation failed";
const char BOX_NO_BOOT_INFO[] = "Get device info failed after device enter boot mode";
const char BOX_NOT_IN_BOOT[] = "device not in boot mode, try again";
const char BOX_VERIFY_FAILED[] = "File verify failed";

// Log lines that a person at a terminal wants to know of, and what to say.
struct Phase
{
    const char* log;
    const char* note;
};
constexpr char SENDING[] = "ldr: Sending firmware file";
constexpr Phase PHASES[] = {
    {"ldr: wait device enter boot", "The device starts its boot code ..."},
    {SENDING, "Sending the pages that differ ..."},
    {"ldr: Firmware verify", "The device verifies the whole file ..."},
};

constexpr char REFUSED_PACKET[] = "broken at receiver";
constexpr char PACKET[] = "ldr: sending ";
constexpr char REPEAT[] = "ldr: retry ";

// Parts of log lines that tell of a fault, and what it comes to if it is the last one.
constexpr struct
{
    const char* text;
    ExitCode code;
} TROUBLES[] = {
    {"no response", ExitCode::NoAnswer},    {"no reply", ExitCode::NoAnswer},
    {"invalid reply", ExitCode::BadAnswer}, {REFUSED_PACKET, ExitCode::Refused},
    {"CRC not match", ExitCode::Refused},   {"neither may be 0", ExitCode::Refused},
};
} // namespace

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

Upgrade::Upgrade(const UpgradeSettings& settings, Connection& connection, Console& console,
                 Interrupts& interrupts)
    : settings(settings)
    , connection(connection)
    , console(console)
    , interrupts(interrupts)
{
}

UpgradeResult Upgrade::run()
{
    Loader loader(&connection.stack.top());
    loader.filename_set(settings.file);
    loader.pack_len_set(settings.packet);
    loader.retry_count_set(settings.retries);
    loader.send_interval_set(settings.interval_ms);
    loader.reset_wait_ms_set(settings.reset_wait_ms);
    loader.verify_wait_ms_set(settings.verify_wait_ms);

    connect_signals(loader);
    const auto start = [this, &loader] {
        run_clock.start();
        loader.upgrade_start();
    };
    connection.stack.run_worker(loader, start, [&loader] {
        // The run finds no link at its first question, and asks it once.
        loader.retry_count_set(0);
        loader.send_interval_set(0);
    });
    result.elapsed_ms = run_clock.elapsed();
    if (!boxes.contains(BOX_DONE))
        throw failure();
    show_progress(result.file_size, result.file_size);
    console.end_progress();
    return result;
}

// All but the interrupt comes on the loader's own thread, and what it leaves is read behind its
// end.
void Upgrade::connect_signals(Loader& loader)
{
    const auto on = [&loader](auto signal, auto receiver) {
        QObject::connect(&loader, signal, &loader, receiver, Qt::DirectConnection);
    };
    on(&Loader::log, [this](const QString& line) {
        connection.log.note(line);
        note_log(line);
    });
    on(&Loader::msgbox, [this](const QString& text) { boxes.append(text); });
    on(&Loader::dev_soft_info_set, [this](const QString& info) { note_soft_info(info); });
    on(&Loader::dev_hard_info_set, [this](const uint8_t* info, int nbytes) {
        if (info)
            result.hard_info = hex_text(info, nbytes);
    });
    on(&Loader::upgrade_progress,
       [this](int file_size, int offset) { show_progress(file_size, offset); });
    QObject::connect(&interrupts, &Interrupts::interrupted, &loader, &Loader::abort);
}

void Upgrade::note_log(const QString& line)
{
    for (const Phase& phase : PHASES) {
        if (line.startsWith(phase.log))
            console.note(phase.note);
    }
    if (line.startsWith(SENDING)) {
        sending = true;
        pages_clock.start();
    }
    if (line.startsWith(PACKET))
        refusals = 0;
    if (line.contains(REFUSED_PACKET))
        ++refusals;
    if (line.startsWith(REPEAT))
        refused_offset = line.section(' ', -1);
    for (const auto& [text, code] : TROUBLES) {
        if (!line.contains(text))
            continue;
        trouble = line.section(": ", 1);
        trouble_code = code;
    }
}

void Upgrade::note_soft_info(const QString& info)
{
    if (info == "N/A")
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
    const Stack& stack = connection.stack;
    if (interrupts.raised())
        return {ExitCode::Interrupted, "the upgrade was stopped",
                QString("The device wasn't restarted and may wait in its boot code. ") + RERUN};
    const QString box = boxes.value(0);
    if (box.startsWith(BOX_WRONG_FIRMWARE))
        return {ExitCode::Refused, box.section('\n', 0, 1).simplified(),
                "The file's name begins with the module's name and an underscore. Take the file "
                "that belongs to this module."};
    const Failure lost = stack.no_answer("the upgrade failed", {});
    if (lost.code == ExitCode::Link)
        return {lost.code, lost.what, lost.advice + ' ' + RERUN};
    if (box.isEmpty() && refusals > 0 && refusals == settings.retries)
        return {
            ExitCode::Refused,
            QString("the module refused all %1 attempts to send the packet at offset %2")
                .arg(QString::number(refusals), refused_offset),
            QString("Maybe the file (%1 bytes) is larger than the module's memory. If it isn't, "
                    "try again with --packet 256.")
                .arg(result.file_size)};
    if (box.isEmpty())
        return {trouble_code, "the transfer failed: " + trouble,
                QString(RERUN) + " On a bad line, --packet 256 and a longer --timeout help."};
    if (box == BOX_NO_INFO && trouble_code == ExitCode::Refused)
        return {trouble_code, "the device can't be upgraded: " + trouble, {}};
    if (box == BOX_NO_INFO)
        return stack.no_answer("the device doesn't tell what it is",
                               "Is the device on? Check the port, its rate and format, and "
                               "--frame; -v shows every exchange.");
    if (box == BOX_NO_BOOT_INFO)
        return stack.no_answer("the device was told to start its boot code",
                               "It may take longer: try again with a --reset-wait of 5000.");
    if (box == BOX_NOT_IN_BOOT)
        return {ExitCode::Refused, "the device didn't start its boot code",
                "Try again; a longer --reset-wait may help."};
    if (box == BOX_VERIFY_FAILED)
        return {trouble_code, "the device doesn't say that it holds the file: " + trouble,
                QString("It stays in its boot code. ") + RERUN};
    return {ExitCode::File, settings.file + ": " + box.simplified(), {}};
}
