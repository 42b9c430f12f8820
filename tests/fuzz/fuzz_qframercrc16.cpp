#include "framerfuzz.h"
#include "qframercrc16.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    FuzzStack stack;
    QFramerCrc16 framer(&stack.bytes);
    check_frame(
        stack, framer, input, [](std::string_view payload) { return Crc16Frame{payload}; },
        Crc16Frame::OVERHEAD);
    return 0;
}
