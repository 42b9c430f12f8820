#include "devices/cnet.h"

#include "devices/bigendian.h"

#include <random>

namespace {
constexpr char HEAD = '\xAB';
constexpr char END = '\xBA';
constexpr char DATA_HEAD = '\xAA';
constexpr char DATA_END = '\x55';
constexpr char DATA_COMMAND = '\xD1';
constexpr int DATA_OVERHEAD = 6; // bytes of a data frame around its payload
constexpr char DATA_SENT = 0;
constexpr char DATA_NOBODY = '\x8A';
constexpr int BLOCK_SIZE = 52;
const QByteArray BLOCK_LENGTH("\x00\x34", 2);
const QByteArray FURTHER("\x01\x02\x03\x04\x05", 5); // follows a configuration
const QByteArray VERSION("\x01\x02\x03", 3);
constexpr char DONE = 0;
constexpr char REFUSED = 1;
constexpr std::chrono::milliseconds ON_AIR(20); // to a device and back

enum Command : std::uint8_t {
    LOCAL_INFO_EXT = 0x61,
    CONFIGURATION_GET_EXT = 0x62,
    CONFIGURATION_SET_EXT = 0x63,
    SEARCH_EXT = 0x65,
    SEARCH_ADDRESS_EXT = 0x66,
    SEND_67 = 0x67,
    SEND_6B = 0x6B,
    VALUE_GET_EXT = 0x6C,
    LOCAL_INFO = 0xD1,
    CONFIGURATION_GET = 0xD2,
    CONFIGURATION_SET = 0xD3,
    PLACE_SET = 0xD4,
    SEARCH = 0xD5,
    SEARCH_ADDRESS = 0xD6,
    SEND_D7 = 0xD7,
    VALUE_GET = 0xDC,
};

struct Request
{
    Command command = {};
    int arguments = 0; // bytes between the command and the end
    const char* meaning = nullptr;
};

const Request REQUESTS[] = {
    {LOCAL_INFO_EXT, 0, "local record, long"},
    {CONFIGURATION_GET_EXT, 8 + 2, "configuration by long address"},
    {CONFIGURATION_SET_EXT, 8 + 2 + BLOCK_SIZE, "new configuration by long address"},
    {SEARCH_EXT, 0, "search, long"},
    {SEARCH_ADDRESS_EXT, 2, "search for an address, long"},
    {SEND_67, 8 + 2, "command 67"},
    {SEND_6B, 8 + 2, "command 6B"},
    {VALUE_GET_EXT, 8, "values by long address"},
    {LOCAL_INFO, 0, "local record"},
    {CONFIGURATION_GET, 2 + 2, "configuration"},
    {CONFIGURATION_SET, 2 + 2 + BLOCK_SIZE, "new configuration"},
    {PLACE_SET, 2, "channel and rate"},
    {SEARCH, 0, "search"},
    {SEARCH_ADDRESS, 2, "search for an address"},
    {SEND_D7, 2 + 2, "command D7"},
    {VALUE_GET, 2, "value"},
};

const Request* find_request(std::uint8_t command)
{
    for (const Request& request : REQUESTS) {
        if (request.command == command)
            return &request;
    }
    return nullptr;
}

bool known_place(int channel, int rate)
{
    return channel >= 9 && channel <= 30 && rate >= 0 && rate <= 2;
}

QByteArray found(const CnetDevice& device, bool with_long_address)
{
    QByteArray record = with_long_address ? big_endian(device.long_address) : QByteArray();
    record += big_endian(device.address);
    record += char(device.signal);
    record += char(device.channel);
    record += char(device.rate);
    return record;
}
} // namespace

CnetDevice cnet_device(int channel, int rate, std::uint16_t address)
{
    CnetDevice device;
    device.channel = channel;
    device.rate = rate;
    device.address = address;
    device.long_address = 0x00C0FFEE00000000 | address;
    device.signal = std::int8_t(-40 - address % 50);
    device.value = std::int8_t(address % 60);
    device.second_value = std::int8_t(-(address % 60));
    for (int i = 0; i < BLOCK_SIZE; ++i)
        device.configuration += char(address + i);
    return device;
}

QVector<CnetDevice> cnet_neighbourhood(int count, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    QVector<CnetDevice> devices;
    for (int i = 0; i < count; ++i) {
        const int channel = 9 + int(random() % 22);
        const int rate = int(random() % 3);
        devices += cnet_device(channel, rate, std::uint16_t(0x1001 + i));
    }
    return devices;
}

Cnet::Cnet(const CnetDevice& local, const QVector<CnetDevice>& neighbours, Journal journal)
    : local(local)
    , neighbours(neighbours)
    , journal(std::move(journal))
{
    for (const CnetDevice& device : neighbours)
        tell(QStringLiteral("in reach: 0x%1 on channel %2 at rate %3")
                 .arg(device.address, 4, 16, QLatin1Char('0'))
                 .arg(device.channel)
                 .arg(device.rate));
}

int Cnet::request_size(const QByteArray& heard, bool silence) const
{
    int size = 0;
    if (heard.size() > 1 && heard[0] == HEAD) {
        if (const Request* request = find_request(std::uint8_t(heard[1])))
            size = 3 + request->arguments;
    } else if (heard.size() > 1 && heard[0] == DATA_HEAD) {
        size = 3 + std::uint8_t(heard[1]);
    }
    if (size > 0 && heard.size() >= size)
        return size;
    return silence ? int(heard.size()) : 0;
}

Answer Cnet::answer(const QByteArray& request)
{
    if (request.startsWith(HEAD) && request.endsWith(END) && request.size() >= 3)
        return configure(request);
    if (request.startsWith(DATA_HEAD) && request.endsWith(DATA_END) &&
        request.size() >= DATA_OVERHEAD && request.size() == 3 + std::uint8_t(request[1]))
        return pass_data(request);
    tell("not a request");
    return {};
}

Answer Cnet::configure(const QByteArray& request)
{
    const std::uint8_t command = std::uint8_t(request[1]);
    const QByteArray arguments = request.mid(2, request.size() - 3);
    const Request* known = find_request(command);
    if (!known || known->arguments != arguments.size()) {
        tell("not a request");
        return {};
    }
    tell(known->meaning);
    const auto reply = [&](const QByteArray& payload) {
        return Reply{HEAD + QByteArray(1, char(command)) + payload + END};
    };
    const bool long_addresses = command < LOCAL_INFO;
    const QByteArray address = arguments.left(long_addresses ? 8 : 2);
    const QByteArray rest = arguments.mid(address.size());

    switch (known->command) {
    case LOCAL_INFO:
    case LOCAL_INFO_EXT:
        return {{reply(local_record(long_addresses))}};
    case PLACE_SET:
        return {{reply(set_place(arguments))}};
    case SEARCH:
    case SEARCH_EXT:
    case SEARCH_ADDRESS:
    case SEARCH_ADDRESS_EXT:
        return search(command, arguments);
    case SEND_D7:
    case SEND_67:
    case SEND_6B:
        return {};
    default:
        break;
    }

    CnetDevice* const device = reached(address);
    if (!device) {
        tell("nobody of that address on this channel and rate");
        return {};
    }
    switch (known->command) {
    case CONFIGURATION_GET:
    case CONFIGURATION_GET_EXT:
        return {{reply(address + BLOCK_LENGTH + device->configuration + FURTHER)}};
    case CONFIGURATION_SET:
    case CONFIGURATION_SET_EXT: {
        const bool fits = rest.startsWith(BLOCK_LENGTH);
        if (fits)
            device->configuration = rest.mid(BLOCK_LENGTH.size());
        return {{reply(address + (fits ? DONE : REFUSED))}};
    }
    case VALUE_GET:
        return {{reply(address + char(device->value))}};
    default:
        return {{reply(address + char(device->value) + char(device->second_value))}};
    }
}

QByteArray Cnet::local_record(bool with_long_address) const
{
    QByteArray record = with_long_address ? big_endian(local.long_address) : QByteArray();
    record += big_endian(local.address);
    record += char(local.channel);
    record += char(local.rate);
    return record + VERSION;
}

QByteArray Cnet::set_place(const QByteArray& arguments)
{
    const int channel = std::uint8_t(arguments[0]);
    const int rate = std::uint8_t(arguments[1]);
    if (!known_place(channel, rate))
        return QByteArray(1, REFUSED);
    local.channel = channel;
    local.rate = rate;
    return QByteArray(1, DONE);
}

Answer Cnet::search(std::uint8_t command, const QByteArray& address) const
{
    const bool with_long_address = command == SEARCH_EXT || command == SEARCH_ADDRESS_EXT;
    Answer answer;
    for (const CnetDevice& device : neighbours) {
        const bool meant = address.isEmpty() || address == big_endian(device.address);
        if (meant && device.channel == local.channel && device.rate == local.rate)
            answer.replies.push_back(
                {HEAD + QByteArray(1, char(command)) + found(device, with_long_address) + END,
                 ON_AIR});
    }
    return answer;
}

//   offset  size  field
//   0       1     0xAA
//   1       1     bytes of command, address and payload
//   2       1     0xD1
//   3       2     address, high byte first
//   5       n     payload
//   5+n     1     0x55
Answer Cnet::pass_data(const QByteArray& request)
{
    const QByteArray address = request.mid(3, 2);
    const bool arrives = request[2] == DATA_COMMAND && reached(address);
    tell(QStringLiteral("%1 bytes of data: %2")
             .arg(request.size() - DATA_OVERHEAD)
             .arg(arrives ? "passed on" : "nobody is there"));
    const QByteArray response =
        QByteArray(1, DATA_HEAD) + '\x01' + (arrives ? DATA_SENT : DATA_NOBODY) + DATA_END;
    Answer answer{{{response}}};
    if (arrives)
        answer.replies.push_back({request, ON_AIR});
    return answer;
}

// The local device answers for itself on any channel.
CnetDevice* Cnet::reached(const QByteArray& address)
{
    const auto has_address = [&](const CnetDevice& device) {
        return address == big_endian(device.address) || address == big_endian(device.long_address);
    };
    if (has_address(local))
        return &local;
    for (CnetDevice& device : neighbours) {
        if (has_address(device) && device.channel == local.channel && device.rate == local.rate)
            return &device;
    }
    return nullptr;
}

void Cnet::tell(const QString& text) const
{
    if (journal)
        journal(text);
}
