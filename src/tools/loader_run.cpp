// One run of Loader from start to end, and its settings.

#include "tools/loader.h"

#include "framers/qframer.h"
#include "tools/toolerror.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <limits>
#include <memory>
#include <new>

namespace {

// The signals carry sizes as int.
constexpr qint64 FILE_MAX = std::numeric_limits<int>::max();

} // namespace

Loader::Loader(QFramer* framer, QObject* parent)
    : QThread(parent)
    , framer(framer)
{
    // For receivers on other threads.
    qRegisterMetaType<LoaderPhase>();
    qRegisterMetaType<LoaderPage>();
    qRegisterMetaType<LoaderDevice>();
}

Loader::~Loader()
{
    abort();
    wait();
}

void Loader::abort()
{
    abort_flag = true;
}

void Loader::filename_set(QString filename)
{
    this->filename = filename;
}

void Loader::pack_len_set(uint nbyte)
{
    pack_len = nbyte & ~3U;
}

void Loader::retry_count_set(uint retry)
{
    retry_count = retry;
}

void Loader::send_interval_set(uint ms)
{
    send_interval = ms;
}

void Loader::reset_wait_ms_set(uint ms)
{
    reset_wait_ms = ms;
}

void Loader::verify_wait_ms_set(uint ms)
{
    verify_wait_ms = ms;
}

void Loader::upgrade_start()
{
    if (isRunning()) {
        emit msgbox(tr("Upgrade in progress, please wait"));
        return;
    }
    abort_flag = false;
    start();
}

void Loader::run()
{
    last = {};
    emit log(tr("ldr: Upgrade thread started"));
    std::unique_ptr<std::uint8_t[]> content;
    const std::optional<std::uint32_t> size = file_read(&content);
    if (!size)
        return;
    emit upgrade_started(int(*size));
    emit upgrade_progress(int(*size), 0);

    reply_missed = false;
    stray_seen = false;
    careful_requests = 0;
    slowest_check_ms = 0;
    QElapsedTimer stopwatch;
    stopwatch.start();
    last.ending = upgrade(content.get(), *size);
    if (abort_flag && last.ending != LoaderEnding::Upgraded)
        last.ending = LoaderEnding::Aborted;
    content.reset();
    emit log(tr("ldr: total took %1 seconds").arg(stopwatch.elapsed() / 1000));
    emit upgrade_done();
}

// Reads the whole file; nothing, a message and the reason when that fails.
std::optional<std::uint32_t> Loader::file_read(std::unique_ptr<std::uint8_t[]>* content)
{
    QFile file(filename);
    last.ending = LoaderEnding::FileNotRead;
    // The open of a pipe would wait for its writer, and no abort could end that.
    if (!QFileInfo(filename).isFile() || !file.open(QIODevice::ReadOnly)) {
        last.reason = LoaderReason::FileNotOpened;
        emit msgbox(tr("Open file failed"));
        return std::nullopt;
    }
    const qint64 size = file.size();
    if (size > FILE_MAX) {
        last.reason = LoaderReason::FileTooLarge;
        emit msgbox(tr("File too large (%1 bytes), %2 bytes at most").arg(size).arg(FILE_MAX));
        return std::nullopt;
    }
    content->reset(new (std::nothrow) std::uint8_t[size_t(size)]);
    if (*content == nullptr) {
        last.reason = LoaderReason::NoMemory;
        emit msgbox(tr("Alloc memory (%1 bytes) failed").arg(size));
        return std::nullopt;
    }
    const qint64 count = file.read(reinterpret_cast<char*>(content->get()), size);
    if (count != size) {
        last.reason = LoaderReason::FileCutShort;
        emit msgbox(tr("Read file failed (%1 of %2 bytes)").arg(qMax(count, qint64(0))).arg(size));
        return std::nullopt;
    }
    last.ending = LoaderEnding::None;
    return std::uint32_t(size);
}

LoaderEnding Loader::upgrade(const std::uint8_t* data, std::uint32_t size)
{
    const int found = dev_info_get_retry();
    if (found != 0) {
        emit msgbox(tr("Get device infomation failed"));
        return found == TOOL_WRONG_FIRMWARE ? LoaderEnding::WrongFirmware : LoaderEnding::NoInfo;
    }
    const LoaderEnding refusal = dev_in_boot ? LoaderEnding::None : boot_reach();
    if (refusal != LoaderEnding::None)
        return refusal;

    emit log(tr("ldr: Sending firmware file ..."));
    emit phase_begun(LoaderPhase::Send);
    if (!file_send(data, size)) {
        emit log(tr("ldr: Firmware send failed, please retry"));
        return LoaderEnding::SendFailed;
    }
    emit log(tr("ldr: Firmware verify ..."));
    emit phase_begun(LoaderPhase::Verify);
    // An answer to a page check must not pass for the one that decides. A late one or a second
    // copy has this time to come, and is dropped before the request.
    msleep(reply_missed ? std::max(verify_wait_ms, quiet_ms()) : quiet_ms());
    // An abort that fell into the final verify is tested here, as no reboot may follow it.
    if (block_verify_retry(data, 0, size, true) != 0 || abort_flag) {
        emit msgbox(tr("File verify failed"));
        return LoaderEnding::VerifyFailed;
    }
    dev_reboot();
    emit msgbox(tr("File sent and verified OK"));
    return LoaderEnding::Upgraded;
}

// From the application into the boot code; None, or why that failed.
LoaderEnding Loader::boot_reach()
{
    dev_boot_enter();
    emit log(tr("ldr: wait device enter boot ..."));
    emit phase_begun(LoaderPhase::EnterBoot);
    msleep(reset_wait_ms);
    if (abort_flag) {
        emit log(tr("ldr: Upgrade progress aborted"));
        return LoaderEnding::Aborted;
    }
    const int found = dev_info_get_retry();
    if (found != 0) {
        emit msgbox(tr("Get device info failed after device enter boot mode"));
        return found == TOOL_WRONG_FIRMWARE ? LoaderEnding::WrongFirmware
                                            : LoaderEnding::NoBootInfo;
    }
    if (!dev_in_boot) {
        emit msgbox(tr("device not in boot mode, try again"));
        return LoaderEnding::NotInBoot;
    }
    return LoaderEnding::None;
}
