#include "framerfuzz.h"
#include "qframerdorv.h"

namespace {
constexpr std::uint8_t RAW = 0x80;
constexpr std::uint8_t TEXT = 0x40;
} // namespace

// The choice is the mode, or one of the forms above.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    FuzzStack stack;
    QFramerDorv framer(&stack.bytes);
    framer.link_set(&stack.link);
    framer.verbose_set(true);
    framer.raw_set((input.choice & RAW) != 0);
    framer.mode_set(input.choice & 3);

    stack.link.arrive(input.came);
    const std::string payload = read_payload(input, [&](char* buffer, int nbytes) {
        if ((input.choice & TEXT) == 0)
            return framer.read(buffer, nbytes);
        return qMin(nbytes, framer.text_read("+radiorx", buffer, nbytes));
    });
    if ((input.choice & RAW) == 0) // what isn't decoded stands in what came
        require(std::string_view(input.came.constData(), std::size_t(input.came.size()))
                    .find(payload) != std::string_view::npos);

    stack.link.reply(input.came);
    const int sent = framer.write("ping", 4);
    require(sent == 0 || (sent == 4 && input.came.contains("ok")));
    return 0;
}
