#include "framerfuzz.h"
#include "qframerrtu.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    FuzzStack stack;
    QFramerRtu framer(&stack.bytes);
    framer.slave_set(input.choice);
    check_frame(
        stack, framer, input,
        [&](std::string_view payload) {
            return RtuFrame{input.choice, payload};
        },
        RtuFrame::OVERHEAD);
    return 0;
}
