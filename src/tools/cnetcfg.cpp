#include "tools/cnetcfg.h"

#include "links/qlink.h"
#include "tools/toolerror.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>

namespace {

constexpr int EXCESS = 256; // room for a link that gives more than it is asked for

QByteArray bytes(const void* data, int nbytes)
{
    return QByteArray(static_cast<const char*>(data), nbytes);
}

QByteArray short_address(const void* addr)
{
    return bytes(addr, CNET_SHORT_ADDRESS);
}

QByteArray long_address(const void* addr)
{
    return bytes(addr, CNET_LONG_ADDRESS);
}

int signed_value(char byte)
{
    return std::int8_t(byte);
}

// Follows the address wherever a configuration block is sent or received.
QByteArray block_length()
{
    const std::uint16_t length = qToBigEndian(std::uint16_t(CNET_BLOCK_SIZE));
    return bytes(&length, sizeof length);
}

} // namespace

QString baud_text(int rate)
{
    switch (rate) {
    case 0:
        return CnetCfg::tr("250 kbps");
    case 1:
        return CnetCfg::tr("500 kbps");
    case 2:
        return CnetCfg::tr("1 Mbps");
    default:
        return CnetCfg::tr("N/A bps");
    }
}

CnetCfg::CnetCfg(QLink* link)
    : link(link)
{
}

CnetCfg::~CnetCfg()
{
    abort();
    wait();
}

int CnetCfg::cmd_send(std::uint8_t cmd, const void* target, const void* payload, int nbytes)
{
    if (link == nullptr) {
        emit log(tr("cfg: link is NULL!!, please check"));
        last_outcome = CnetOutcome::NoLink;
        return TOOL_NO_LINK;
    }
    if (!link->is_open()) {
        emit log(tr("cfg: link is not open!!, please check"));
        last_outcome = CnetOutcome::NoLink;
        return TOOL_FAILED;
    }
    link->flush(); // old bytes can't be taken for the response
    const QByteArray frame = cnet_request(cmd, target, payload, nbytes);
    link->write(frame.constData(), int(frame.size()));
    last_outcome = CnetOutcome::Done;
    return int(frame.size());
}

int CnetCfg::cmd_send(std::uint8_t cmd, const void* payload, int nbytes)
{
    return cmd_send(cmd, nullptr, payload, nbytes);
}

int CnetCfg::cmd_send(std::uint8_t cmd)
{
    return cmd_send(cmd, nullptr, nullptr, 0);
}

int CnetCfg::cmd_send(std::uint8_t cmd, const void* payload)
{
    return cmd_send(cmd, nullptr, payload, 2);
}

int CnetCfg::cmd_send(std::uint8_t cmd, std::uint16_t payload)
{
    const std::uint16_t wire = qToBigEndian(payload);
    return cmd_send(cmd, nullptr, &wire, sizeof wire);
}

int CnetCfg::cmd_send(std::uint8_t cmd, std::uint16_t target, const void* payload, int nbytes)
{
    const std::uint16_t wire = qToBigEndian(target);
    return cmd_send(cmd, &wire, payload, nbytes);
}

int CnetCfg::resp_read(std::uint8_t cmd, void* out, int nbytes)
{
    last_outcome = CnetOutcome::NoLink;
    if (link == nullptr)
        return TOOL_NO_LINK;
    QByteArray frame(nbytes + CNET_FRAMING + EXCESS, '\0');
    const int count = std::min(link->read(frame.data(), nbytes + CNET_FRAMING), int(frame.size()));
    if (count <= 0) {
        emit log(tr("cfg: read time out"));
        last_outcome = count == 0 ? CnetOutcome::NoAnswer : CnetOutcome::LinkError;
        return count;
    }
    last_outcome = CnetOutcome::BadAnswer;
    if (count < CNET_FRAMING) {
        emit log(tr("cfg: read a short frame, lenght = %1").arg(count));
        return 0;
    }
    const auto response = cnet_response(frame.left(count));
    if (!response) {
        emit log(tr("cfg: read a invalid frame, head or end flag not match"));
        return 0;
    }
    int size = int(response->payload.size());
    if (size > nbytes) {
        emit log(tr("read bytes (%1) is greater then needed (%2)").arg(size).arg(nbytes));
        size = nbytes;
    }
    if (response->cmd != cmd) {
        emit log(tr("response cmd (%1) is not we needed (%2)").arg(response->cmd).arg(cmd));
        return 0;
    }
    std::copy_n(response->payload.constData(), size, static_cast<char*>(out));
    last_outcome = CnetOutcome::Done;
    return size;
}

int CnetCfg::local_info_get(void* out)
{
    return info_get(cnet::LOCAL_INFO_GET, out);
}

int CnetCfg::local_info_get_ext(void* out)
{
    return info_get(cnet::LOCAL_INFO_GET_EXT, out);
}

int CnetCfg::remote_cfg_get(const void* addr, std::uint32_t* cfg, void* extra)
{
    return cfg_get(cnet::REMOTE_CFG_GET, short_address(addr), cfg, extra);
}

int CnetCfg::remote_cfg_get_ext(const void* addr, std::uint32_t* cfg, void* extra)
{
    return cfg_get(cnet::REMOTE_CFG_GET_EXT, long_address(addr), cfg, extra);
}

int CnetCfg::remote_cfg_set(const void* addr, const std::uint32_t* cfg)
{
    return cfg_set(cnet::REMOTE_CFG_SET, short_address(addr), cfg);
}

int CnetCfg::remote_cfg_set_ext(const void* addr, const std::uint32_t* cfg)
{
    return cfg_set(cnet::REMOTE_CFG_SET_EXT, long_address(addr), cfg);
}

int CnetCfg::local_chan_baud_set(int chan, int rate)
{
    emit log(tr("cfg: set device to chan %1, %2").arg(chan).arg(baud_text(rate)));
    const char payload[] = {char(chan), char(rate)};
    QByteArray status;
    const int count = exchange(cnet::LOCAL_CHAN_BAUD_SET, bytes(payload, sizeof payload), &status);
    return judge(count == cnet::LOCAL_CHAN_BAUD_SET.response, status.startsWith('\0'))
               ? 0
               : TOOL_FAILED;
}

int CnetCfg::remote_value_get(const void* addr)
{
    return value_get(cnet::REMOTE_VALUE_GET, short_address(addr), nullptr);
}

int CnetCfg::remote_value_get_ext(const void* addr, int* second)
{
    return value_get(cnet::REMOTE_VALUE_GET_EXT, long_address(addr), second);
}

int CnetCfg::cmd_d7_send(const void* target, const void* data)
{
    return cmd_send(cnet::CMD_D7.code, target, data, cnet::CMD_D7.request);
}

int CnetCfg::cmd_67_send(const void* addr, const void* data)
{
    const QByteArray payload = long_address(addr) + bytes(data, 2);
    return cmd_send(cnet::CMD_67.code, payload.constData(), cnet::CMD_67.request);
}

int CnetCfg::cmd_6b_send(const void* addr, const void* data)
{
    const QByteArray payload = long_address(addr) + bytes(data, 2);
    return cmd_send(cnet::CMD_6B.code, payload.constData(), cnet::CMD_6B.request);
}

// Whether an exchange was carried out. resp_read has found out why there is no answer; beyond that
// an answer must fit the request, and must not say no.
bool CnetCfg::judge(bool fits, bool accepted)
{
    if (last_outcome == CnetOutcome::Done && !(fits && accepted))
        last_outcome = fits ? CnetOutcome::Refused : CnetOutcome::BadAnswer;
    return last_outcome == CnetOutcome::Done;
}

// What cmd_send returned when below 1, else as resp_read; answer holds the command's size whatever
// came.
int CnetCfg::exchange(const CnetCommand& command, const QByteArray& payload, QByteArray* answer)
{
    const int sent = cmd_send(command.code, payload.constData(), int(payload.size()));
    if (sent < 1)
        return sent;
    answer->fill('\0', command.response);
    return resp_read(command.code, answer->data(), command.response);
}

int CnetCfg::info_get(const CnetCommand& command, void* out)
{
    QByteArray info;
    const int count = exchange(command, {}, &info);
    if (count > 0)
        std::memcpy(out, info.constData(), size_t(count));
    judge(count == command.response);
    return count;
}

int CnetCfg::cfg_get(const CnetCommand& command, const QByteArray& addr, std::uint32_t* cfg,
                     void* extra)
{
    const QByteArray key = addr + block_length();
    const int sent = cmd_send(command.code, key.constData(), command.request);
    if (sent < 1)
        return sent;
    QByteArray answer(command.response, '\0');
    const int count = resp_read(command.code, answer.data(), command.response);
    if (!judge(count == command.response && answer.startsWith(key)))
        return 0;
    const char* block = answer.constData() + key.size();
    std::memcpy(cfg, block, CNET_BLOCK_SIZE);
    std::memcpy(extra, block + CNET_BLOCK_SIZE, CNET_EXTRA_SIZE);
    return command.response;
}

int CnetCfg::cfg_set(const CnetCommand& command, const QByteArray& addr, const std::uint32_t* cfg)
{
    QByteArray answer;
    const int count =
        exchange(command, addr + block_length() + bytes(cfg, CNET_BLOCK_SIZE), &answer);
    const bool fits = count == command.response && answer.startsWith(addr);
    return judge(fits, answer.endsWith('\0')) ? 0 : TOOL_FAILED;
}

int CnetCfg::value_get(const CnetCommand& command, const QByteArray& addr, int* second)
{
    QByteArray answer;
    const int count = exchange(command, addr, &answer);
    if (!judge(count == command.response))
        return VALUE_FAILED;
    const char* values = answer.constData() + addr.size();
    if (second != nullptr)
        *second = signed_value(values[1]);
    return signed_value(values[0]);
}
