// Feeds a framer over QFramerNull and a link in memory with bytes of libFuzzer's.
#pragma once

#include "fuzzing.h"
#include "memorylink.h"
#include "qframer.h"
#include "qframernull.h"

#include <string_view>
#include <vector>

// An input: how much the reader asks for, a byte for the target's own use, and what comes.
struct FuzzInput
{
    static constexpr std::size_t HEADER = 2;
    static constexpr int STEP = 8; // so that a byte reaches past frames that need no heap

    int nbytes = 0;
    std::uint8_t choice = 0;
    QByteArray came;

    FuzzInput(const std::uint8_t* data, std::size_t size)
    {
        if (size < HEADER)
            return;
        nbytes = data[0] * STEP;
        choice = data[1];
        came = QByteArray(reinterpret_cast<const char*>(data) + HEADER, int(size - HEADER));
    }
};

struct FuzzStack
{
    MemoryLink link;
    QFramerNull bytes{&link};
};

// The payload that `read` stores, in a buffer of just the size asked for: a byte too many is
// AddressSanitizer's to find.
template <typename Read> std::string read_payload(const FuzzInput& input, Read read)
{
    std::vector<char> buffer(std::size_t(input.nbytes));
    const int result = read(buffer.data(), input.nbytes);
    require(result <= input.nbytes);
    return {buffer.data(), std::size_t(qMax(0, result))};
}

// A payload that came up must be the one whose frame came: built again, it gives the same bytes.
template <typename Frame>
void check_frame(FuzzStack& stack, QFramer& framer, const FuzzInput& input, Frame frame_of,
                 int overhead)
{
    stack.link.arrive(input.came);
    const std::string payload =
        read_payload(input, [&](char* buffer, int nbytes) { return framer.read(buffer, nbytes); });
    if (payload.empty())
        return;
    QByteArray frame(int(payload.size()) + overhead, '\0');
    frame_of(payload).build(frame.data());
    require(frame + stack.link.unread() == input.came);
}
