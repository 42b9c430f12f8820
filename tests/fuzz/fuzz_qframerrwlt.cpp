#include "framerfuzz.h"
#include "qframerrwlt.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    FuzzStack stack;
    QFramerRwlt framer(&stack.bytes);
    check_frame(
        stack, framer, input, [](std::string_view payload) { return RwltFrame{payload}; },
        RwltFrame::OVERHEAD);
    return 0;
}
