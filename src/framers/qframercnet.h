// Carries payload to and from a device with a two-byte address, through a local device that answers
// every send.
#pragma once

#include "framers/qframer.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

// The data frame, in both directions. Nothing in it is escaped and it has no checksum.
//
//   offset   size   field
//   0        1      start, AA
//   1        1      length: n + 3, the bytes of command, address and payload
//   2        1      command: D1 for data
//   3        2      address of the target, high byte first
//   5        n      payload, at most 252 bytes
//   n + 5    1      end, 55
struct CnetFrame
{
    static constexpr int OVERHEAD = 6;
    static constexpr int PAYLOAD_MAX = 252;
    static constexpr std::uint8_t DATA = 0xD1;

    std::uint8_t command = DATA;
    std::array<std::uint8_t, 2> address = {}; // in wire order
    std::string_view payload;

    // Writes payload.size() + OVERHEAD bytes to frame.
    void build(char* frame) const;
    // Nothing when a marker, the length or the command isn't that of a data frame. The payload
    // points into frame.
    static std::optional<CnetFrame> parse(std::string_view frame);
};

// The local device's response to each send.
//
//   offset   size   field
//   0        1      start, AA
//   1        1      length, 01
//   2        1      status: 00 sent, 81 try again, 85 busy, another: failed, with this error number
//   3        1      end, 55
struct CnetLocalResponse
{
    static constexpr int SIZE = 4;
    enum Status : std::uint8_t { SENT = 0x00, AGAIN = 0x81, BUSY = 0x85 };

    std::uint8_t status = SENT;

    // Writes SIZE bytes to response.
    void build(char* response) const;
    static std::optional<CnetLocalResponse> parse(std::string_view response);
};

// Results of a send, beside the errors of the layers below:
//
//   CNET_TRY_AGAIN  -11   the local device asks for another attempt
//   CNET_BUSY       -16   the local device is busy
enum CnetError : int { CNET_TRY_AGAIN = -11, CNET_BUSY = -16 };

// Set the target before the first write or read. The log has each failure.
//
// A send repeats at once, and without end, while the local device answers "try again" or "busy",
// and blocks its caller so long. An owner who wants a way out sets a condition with
// keep_trying_set; without one nothing is asked.
class QFramerCnet : public QFramer
{
public:
    explicit QFramerCnet(QFramer* lower);

    // Copies the two bytes, which are in wire order.
    void target_set(const std::uint8_t* address);
    void target_set(std::uint16_t address);

    // Asked on the sending thread after each "try again" or "busy": false ends the send, which then
    // returns CNET_TRY_AGAIN or CNET_BUSY. So an owner can count attempts, watch a clock or look at
    // an atomic flag that another thread sets. An empty function, as after construction, repeats
    // for ever.
    void keep_trying_set(std::function<bool()> keep_trying);

    void flush() override;
    // write_to the target.
    int write(const char* buffer, int nbytes) override;
    // One data frame from the target. Every failure gives 0 and a line in the log, never a negative
    // number; a frame without payload counts as a failure.
    int read(char* buffer, int nbytes) override;

    // One exchange: drops what waits to be read, sends the frame and awaits the response. nbytes
    // when it was sent, CNET_TRY_AGAIN or CNET_BUSY, 0 when the frame did not go out,
    // FRAMER_BAD_SIZE when the payload is too long, or the error of the layer below. address points
    // to two bytes in wire order.
    int frame_send(const std::uint8_t* address, const char* buffer, int nbytes,
                   std::uint8_t command);
    // Repeats frame_send as described above; the last result.
    int frame_send_retry(const std::uint8_t* address, const char* buffer, int nbytes,
                         std::uint8_t command);
    // The same to the target.
    int frame_send_retry(const char* buffer, int nbytes, std::uint8_t command);
    // frame_send_retry as data.
    int write_to(const std::uint8_t* address, const char* buffer, int nbytes);
    int write_to(std::uint16_t address, const char* buffer, int nbytes);

private:
    std::array<std::uint8_t, 2> target = {};
    std::function<bool()> keep_trying;
};
