// Frames and commands of the configuration dialogue of cnet devices: values only, no link.
#pragma once

#include <QByteArray>
#include <QVector>
#include <cstdint>
#include <optional>

//   request    0xAB  command  [target, 2 bytes]  payload  0xBA
//   response   0xAB  command                     payload  0xBA
//
// No length and no checksum: a response is what one read of the link gives.
constexpr std::uint8_t CNET_HEAD = 0xAB;
constexpr std::uint8_t CNET_END = 0xBA;
constexpr int CNET_FRAMING = 3; // head, command and end
constexpr int CNET_TARGET_SIZE = 2;

constexpr int CNET_SHORT_ADDRESS = 2;
constexpr int CNET_LONG_ADDRESS = 8;
constexpr int CNET_BLOCK_WORDS = 13; // the device configuration, which nothing here looks into
constexpr int CNET_BLOCK_SIZE = CNET_BLOCK_WORDS * 4;
constexpr int CNET_EXTRA_SIZE = 5; // what follows the block in the answer to a read

struct CnetCommand
{
    std::uint8_t code = 0;
    bool targeted = false; // a target of 2 bytes precedes the payload
    int request = 0;       // bytes of payload sent
    int response = 0;      // bytes of payload of each answer; 0: no answer is read
};

// A is an address, short (2 bytes) from 0xD1 on and long (8 bytes) below; N is the size of the
// block as two bytes, 00 34. Status 0 means done.
//
//   commands                 request payload     response payload
//   local_info_get           -                   7 or 15 bytes
//   remote_cfg_get           A N                 A N, the 52-byte block, 5 further bytes
//   remote_cfg_set           A N, the block      A, status
//   local_chan_baud_set      channel, rate       status
//   remote_value_get         A                   2 bytes unread, a signed value (short)
//                                                8 bytes unread, two signed values (long)
//   search_all, search_addr  -                   a cnet_search_response(_ext), repeated
//   cmd_67, cmd_6b           A, 2 bytes          none is read
//   cmd_d7                   2 bytes             none is read
namespace cnet {
// clang-format off
//                                           code  target  request  response
constexpr CnetCommand LOCAL_INFO_GET_EXT   {0x61,  false,   0,      15};
constexpr CnetCommand REMOTE_CFG_GET_EXT   {0x62,  false,  10,      67};
constexpr CnetCommand REMOTE_CFG_SET_EXT   {0x63,  false,  62,       9};
constexpr CnetCommand SEARCH_ALL_EXT       {0x65,  false,   0,      13};
constexpr CnetCommand SEARCH_ADDR_EXT      {0x66,  true,    0,      13};
constexpr CnetCommand CMD_67               {0x67,  false,  10,       0};
constexpr CnetCommand CMD_6B               {0x6B,  false,  10,       0};
constexpr CnetCommand REMOTE_VALUE_GET_EXT {0x6C,  false,   8,      10};
constexpr CnetCommand LOCAL_INFO_GET       {0xD1,  false,   0,       7};
constexpr CnetCommand REMOTE_CFG_GET       {0xD2,  false,   4,      61};
constexpr CnetCommand REMOTE_CFG_SET       {0xD3,  false,  56,       3};
constexpr CnetCommand LOCAL_CHAN_BAUD_SET  {0xD4,  false,   2,       1};
constexpr CnetCommand SEARCH_ALL           {0xD5,  false,   0,       5};
constexpr CnetCommand SEARCH_ADDR          {0xD6,  true,    0,       5};
constexpr CnetCommand CMD_D7               {0xD7,  true,    2,       0};
constexpr CnetCommand REMOTE_VALUE_GET     {0xDC,  false,   2,       3};
// clang-format on
} // namespace cnet

// Answers to a search, carried unread; their layout is the device's.
struct cnet_search_response
{
    std::uint8_t bytes[5] = {};
};
struct cnet_search_response_ext
{
    std::uint8_t bytes[13] = {};
};

// target points at 2 bytes or is null, and then left out; so is a payload that is null or empty.
QByteArray cnet_request(std::uint8_t cmd, const void* target, const void* payload, int nbytes);

struct CnetResponse
{
    std::uint8_t cmd = 0;
    QByteArray payload;
};
// None when the frame is shorter than its framing or isn't framed.
std::optional<CnetResponse> cnet_response(const QByteArray& frame);

constexpr int CNET_FIRST_CHANNEL = 9;
constexpr int CNET_CHANNELS = 22;
constexpr int CNET_RATES = 3;

struct CnetPair
{
    int chan = 0; // 9 to 30
    int baud = 0; // rate index, 0 to 2
};
// The pairs that a search visits, in its order: all channels of a rate before the next rate. Bit i
// of chan_mask is channel 9 + i, bit j of baud_mask is rate j; bits above the last are ignored.
QVector<CnetPair> cnet_pairs(std::uint32_t chan_mask, std::uint32_t baud_mask);
