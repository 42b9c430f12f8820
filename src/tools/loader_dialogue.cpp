// What Loader says to the module, and what it makes of the answers.

#include "tools/loader.h"

#include "checksum/crc.h"
#include "framers/qframer.h"
#include "tools/bootdialogue.h"
#include "tools/toolerror.h"

#include <QElapsedTimer>
#include <algorithm>

namespace {

// Even a sleep of 0 takes a tenth of a millisecond, as much as an exchange at some megabits.
void pause(std::uint32_t ms)
{
    if (ms > 0)
        QThread::msleep(ms);
}

} // namespace

// A failed write shows as a missing reply. Replies say nothing of what they answer but their
// letter, so what came before this request must be gone: the second copy of a reply, or a late one.
void Loader::request_send(const QByteArray& request)
{
    const bool decides = request[0] == char(BOOT_VERIFY);
    if (careful_requests > 0 || (stray_seen && decides))
        pause(quiet_ms());
    careful_requests = std::max(0, careful_requests - 1);
    framer->flush();
    framer->write(request.constData(), int(request.size()));
}

// The status that the device answers with, 0 to 255, or TOOL_NO_REPLY or TOOL_BAD_REPLY.
int Loader::status_get(const QByteArray& request, std::uint32_t wait_ms)
{
    request_send(request);
    pause(wait_ms);
    QElapsedTimer clock;
    clock.start();
    std::uint8_t reply[BOOT_STATUS_SIZE] = {};
    const int count = framer->read(reinterpret_cast<char*>(reply), BOOT_STATUS_SIZE);
    if (count != BOOT_STATUS_SIZE) {
        reply_miss();
        last.reason = LoaderReason::NoReply;
        return TOOL_NO_REPLY;
    }
    if (reply[0] != std::uint8_t(request[0])) {
        reply_miss();
        stray_seen = true;
        last.reason = LoaderReason::BadReply;
        return TOOL_BAD_REPLY;
    }
    if (reply[0] == BOOT_VERIFY)
        slowest_check_ms = std::max(slowest_check_ms, std::int64_t(clock.elapsed()));
    last.reason = LoaderReason::None;
    return reply[1];
}

// The true answer may still be on its way. It must not meet the repeat, nor the repeat's own answer
// the request after that.
void Loader::reply_miss()
{
    constexpr int THE_REPEAT_AND_THE_NEXT = 2;
    reply_missed = true;
    careful_requests = THE_REPEAT_AND_THE_NEXT;
}

// What is on its way arrives within the time that an exchange takes, on a slow line too.
std::uint32_t Loader::quiet_ms() const
{
    constexpr std::int64_t LEAST_MS = 10; // more than the systems at both ends hold bytes back
    constexpr std::int64_t MOST_MS = 1000;
    return std::uint32_t(std::clamp(slowest_check_ms, LEAST_MS, MOST_MS));
}

int Loader::dev_info_get()
{
    emit log(tr("ldr: get device info ..."));
    request_send(QByteArray(1, char(BOOT_INFO)));
    std::uint8_t reply[BOOT_INFO_MAX] = {};
    const int count =
        std::min(framer->read(reinterpret_cast<char*>(reply), BOOT_INFO_MAX), BOOT_INFO_MAX);
    const int refusal = info_refusal(reply, count);
    if (refusal != 0) {
        reply_miss(); // what came may be chatter of the application, before the reply
        emit dev_soft_info_set(QStringLiteral("N/A"));
        emit dev_hard_info_set(nullptr, 0);
        return refusal;
    }

    const DeviceInfo info = device_info(reply, count);
    rom_page_size = info.rom_page_size;
    mtu = info.mtu;
    dev_in_boot = info.in_boot;
    emit log(tr("ldr: device ROM page size %1B, MTU %2B").arg(rom_page_size).arg(mtu));
    device_report(info);
    const int result = info.name ? firmware_check(*info.name) : 0;
    if (result == 0)
        mtu = std::min(mtu, pack_len);
    emit dev_soft_info_set(soft_info(info));
    hard_info_report(info);
    return result;
}

// 0, or why the reply is none to work with.
int Loader::info_refusal(const std::uint8_t* reply, int size)
{
    if (size < BOOT_INFO_MIN) {
        emit log(tr("ldr: get device infomation failed, error or no reply"));
        last.reason = LoaderReason::NoReply;
        return TOOL_NO_REPLY;
    }
    if (reply[0] != BOOT_INFO) {
        emit log(tr("ldr: get devie information failed, invalid reply"));
        last.reason = LoaderReason::BadReply;
        return TOOL_BAD_REPLY;
    }
    const DeviceInfo info = device_info(reply, size);
    if (info.rom_page_size == 0 || info.mtu == 0) {
        zero_report(info.rom_page_size, info.mtu);
        return TOOL_BAD_REPLY;
    }
    last.reason = LoaderReason::None;
    return 0;
}

void Loader::zero_report(std::uint32_t page_size, std::uint32_t mtu)
{
    last.reason = LoaderReason::ZeroSize;
    emit log(
        tr("ldr: device ROM page size %1B, MTU %2B: neither may be 0").arg(page_size).arg(mtu));
}

void Loader::device_report(const DeviceInfo& info)
{
    emit device_found(
        {soft_info(info),
         QByteArray(reinterpret_cast<const char*>(info.hard_info), info.hard_info_size),
         info.in_boot, info.rom_page_size, info.mtu});
}

int Loader::firmware_check(const QString& module_name)
{
    emit log(tr("ldr: module name: ") + module_name);
    last.module_name = module_name;
    const QString file_name = filename.mid(filename.lastIndexOf('/') + 1);
    if (!file_name.isEmpty() && !firmware_fits(file_name, module_name)) {
        emit log(tr("ldr: wrong firmware (%1) for module (%2) !!").arg(file_name, module_name));
        emit msgbox(tr("wrong firmware (%1)\nfor module     (%2)\nPlease select the right firmware")
                        .arg(file_name, module_name));
        return TOOL_WRONG_FIRMWARE;
    }
    emit log(tr("ldr: module name matched"));
    return 0;
}

void Loader::hard_info_report(const DeviceInfo& info)
{
    if (info.hard_info != nullptr)
        emit log(hard_info_text(tr("hard info (%1 bytes): %2 %3 %4 %5"), info.hard_info,
                                info.hard_info_size));
    emit dev_hard_info_set(info.hard_info, info.hard_info_size);
}

int Loader::dev_info_get_retry()
{
    for (std::uint32_t repeats = 0;; ++repeats) {
        const int result = dev_info_get();
        if (result == 0 || result == TOOL_WRONG_FIRMWARE)
            return result;
        pause(send_interval);
        if (repeats == retry_count)
            return result;
    }
}

void Loader::dev_boot_enter()
{
    request_send(QByteArray(1, char(BOOT_ENTER)));
    emit log(tr("ldr: set device enter boot mode ... [done]"));
}

void Loader::dev_reboot()
{
    emit log(tr("ldr: device reboot"));
    request_send(QByteArray(1, char(BOOT_REBOOT)));
}

int Loader::packet_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n)
{
    const int status = status_get(boot_write_request(data, offset, n), 0);
    if (status == 0)
        return int(n);
    if (status == TOOL_NO_REPLY) {
        emit log(tr("ldr: data sent, device no response"));
        return TOOL_NO_REPLY;
    }
    emit log(tr("ldr: data sent, packet was broken at receiver"));
    if (status > 0) {
        last.reason = LoaderReason::PacketRefused;
        ++last.refusals;
    }
    return TOOL_REFUSED;
}

int Loader::packet_send_retry(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n)
{
    int result = 0;
    last.offset = offset;
    last.refusals = 0;
    for (std::uint32_t attempt = 0; attempt < retry_count; ++attempt) {
        if (abort_flag) {
            emit log(tr("ldr: packet transfer aborted!"));
            return TOOL_ABORTED;
        }
        result = packet_send(data, offset, n);
        if (result == int(n))
            return result;
        emit log(tr("ldr: retry %1 bytes at offset %2").arg(n).arg(offset));
    }
    return result;
}

bool Loader::block_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t size,
                        std::uint32_t total)
{
    for (std::uint32_t sent = 0; sent < size;) {
        if (abort_flag) {
            emit log(tr("ldr: transfer aborted!"));
            return true;
        }
        if (mtu == 0) {
            emit log(tr("ldr: packet length below 4 bytes, please set a larger one"));
            last.reason = LoaderReason::ShortPacket;
            return false;
        }
        const std::uint32_t n = std::min(mtu, size - sent);
        const std::uint32_t at = offset + sent;
        emit log(tr("ldr: sending %1 bytes, progress %2/%3 (%4%)")
                     .arg(n)
                     .arg(at)
                     .arg(total)
                     .arg(std::uint64_t(at) * 100 / total));
        if (packet_send_retry(data + sent, at, n) != int(n))
            return false;
        sent += n;
        pause(send_interval);
    }
    return true;
}

int Loader::block_verify(std::uint32_t crc, std::uint32_t offset, std::uint32_t size, bool final)
{
    const int status =
        status_get(boot_verify_request(crc, offset, size, final), final ? verify_wait_ms : 0);
    if (status == TOOL_NO_REPLY) {
        emit log(
            tr("ldr: block(offset=%1, size=%2) verify failed, no reply").arg(offset).arg(size));
        return status;
    }
    if (status == TOOL_BAD_REPLY) {
        emit log(tr("ldr: block(offset=%1, size=%2) verify failed, invalid reply")
                     .arg(offset)
                     .arg(size));
        return status;
    }
    if (status == 0) {
        emit log(tr("ldr: block(offset=%1, size=%2) verify ... [OK]").arg(offset).arg(size));
        return 0;
    }
    const QString text = final ? tr("ldr: block(offset=%1, size=%2) CRC not match, please retry")
                               : tr("ldr: block(offset=%1, size=%2) updating ...");
    emit log(text.arg(offset).arg(size));
    last.reason = final ? LoaderReason::CrcDiffers : LoaderReason::None;
    return BLOCK_DIFFERS;
}

int Loader::block_verify_retry(const std::uint8_t* data, std::uint32_t offset, std::uint32_t size,
                               bool final)
{
    const std::uint32_t crc = crc32(data, size, CRC32_START);
    int result = TOOL_BAD_REPLY;
    for (std::uint32_t attempt = 0; attempt < retry_count; ++attempt) {
        if (abort_flag)
            return TOOL_ABORTED;
        result = block_verify(crc, offset, size, final);
        if (result == 0 || result == BLOCK_DIFFERS)
            return result;
        pause(send_interval);
    }
    return result;
}

bool Loader::file_send(const std::uint8_t* data, std::uint32_t size)
{
    if (size > 0 && rom_page_size == 0) {
        zero_report(rom_page_size, mtu);
        return false;
    }
    for (std::uint32_t offset = 0; offset < size;) {
        emit upgrade_progress(int(size), int(offset));
        const std::uint32_t n = std::min(rom_page_size, size - offset);
        const int verdict = block_verify_retry(data + offset, offset, n, false);
        if (verdict == BLOCK_DIFFERS) {
            if (!page_send(data + offset, offset, n, size))
                return false;
        } else if (verdict != 0) {
            if (verdict != TOOL_ABORTED)
                emit page_state(offset, LoaderPage::Failed);
            return false;
        } else {
            emit page_state(offset, LoaderPage::Equal);
        }
        offset += n;
    }
    return true;
}

// A page that differs. True on an abort too, like block_send.
bool Loader::page_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n,
                       std::uint32_t total)
{
    emit page_state(offset, LoaderPage::Differs);
    emit page_state(offset, LoaderPage::Sending);
    const bool sent = block_send(data, offset, n, total);
    if (abort_flag)
        emit page_state(offset, LoaderPage::Differs);
    else
        emit page_state(offset, sent ? LoaderPage::Sent : LoaderPage::Failed);
    return sent;
}
