#include "framerfuzz.h"
#include "qframerchan.h"

// The choice is the length of the prefix.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string_view PREFIX = "0123456789ABCDEF";
    const FuzzInput input(data, size);
    const std::string_view prefix = PREFIX.substr(0, input.choice % (PREFIX.size() + 1));
    FuzzStack stack;
    QFramerChan framer(&stack.bytes);
    framer.chan_set(prefix.data(), unsigned(prefix.size()));
    check_frame(
        stack, framer, input,
        [&](std::string_view payload) {
            return ChanFrame{prefix, payload};
        },
        int(prefix.size()));
    return 0;
}
