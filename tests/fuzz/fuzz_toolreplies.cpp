// The parsers of the device tools: the first byte picks one, the rest is a device's answer.

#include "atreply.h"
#include "bootdialogue.h"
#include "cnetframe.h"
#include "fuzzing.h"

#include <vector>

namespace {

void boot_record(const QByteArray& reply)
{
    if (reply.size() < BOOT_INFO_MIN)
        return;
    const std::vector<std::uint8_t> record(reply.begin(), reply.end());
    const DeviceInfo info = device_info(record.data(), int(record.size()));
    const int named = info.name ? int(info.name->size()) : 0;
    require(named + info.hard_info_size <= reply.size() - BOOT_INFO_MIN);
    soft_info(info);
    hard_info_text("%1 %2 %3 %4 %5", info.hard_info, info.hard_info_size);
    firmware_fits("M1_1.bin", info.name.value_or(QString()));
}

void at_replies(const QByteArray& reply)
{
    require(at_key(reply).size() <= 16);
    at_address(reply);
    for (const QByteArray& field : at_fields(reply, 3)) {
        at_float(field);
        at_word(field);
    }
    // Where the text is cut changes nothing.
    QByteArray whole = reply + '\n';
    QByteArray piece = whole.left(int(reply.size() / 2));
    QStringList devices = at_devices_take(piece);
    piece += whole.mid(int(reply.size() / 2));
    devices += at_devices_take(piece);
    require(reply.size() > 1024 || devices == at_devices_take(whole));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const ChoiceInput input(data, size);
    switch (input.choice % 3) {
    case 0:
        boot_record(input.rest);
        break;
    case 1:
        at_replies(input.rest);
        break;
    default:
        if (const auto response = cnet_response(input.rest))
            require(response->payload.size() == input.rest.size() - CNET_FRAMING);
    }
    return 0;
}
