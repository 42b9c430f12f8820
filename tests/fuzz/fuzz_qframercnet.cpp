#include "framerfuzz.h"
#include "qframercnet.h"

// The choice is the low byte of the target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    FuzzStack stack;
    QFramerCnet framer(&stack.bytes);
    framer.target_set(input.choice);
    check_frame(
        stack, framer, input,
        [&](std::string_view payload) {
            return CnetFrame{CnetFrame::DATA, {0, input.choice}, payload};
        },
        CnetFrame::OVERHEAD);

    // As a response to a send, after which the device is silent.
    stack.link.reply(input.came);
    const int sent = framer.write("ping", 4);
    require(sent == 0 || (sent == 4 && input.came.startsWith(QByteArray("\xAA\x01\0\x55", 4))));
    return 0;
}
