// What a program sends to a simulated module: the choice is the module and its frame, the rest
// comes as one piece with silence behind it.

#include "boot.h"
#include "cnet.h"
#include "dorv.h"
#include "fuzzing.h"

#include <memory>

static std::unique_ptr<Module> make_module(int choice)
{
    switch (choice % 8) {
    case 0:
        return std::make_unique<Cnet>(cnet_device(9, 0, 1), cnet_neighbourhood(6, 1));
    case 1:
        return std::make_unique<Dorv>(DorvSettings());
    default:
        BootSettings settings;
        const char* const frames[] = {"none", "crc16", "rtu:1", "chan:0506", "rwlt", "none"};
        settings.framing = *Framing::named(frames[choice % 8 - 2]);
        settings.rom_size = 4096;
        settings.page = quint16(choice & 0xF0);
        settings.mtu = quint16(choice & 0xF0);
        settings.in_boot = (choice & 8) != 0;
        return std::make_unique<Boot>(settings);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const ChoiceInput input(data, size);
    const std::unique_ptr<Module> module = make_module(input.choice);
    QByteArray heard = input.rest;
    while (!heard.isEmpty()) {
        int request = module->request_size(heard, false);
        if (request == 0)
            request = module->request_size(heard, true);
        require(request >= 0 && request <= heard.size());
        if (request == 0)
            return 0; // the start of a line, which somebody still types
        const Answer answer = module->answer(heard.left(request));
        for (const Reply& reply : answer.replies)
            require(!reply.bytes.isEmpty() && reply.after.count() >= 0);
        if (answer.resets)
            module->restart();
        heard.remove(0, request);
    }
    return 0;
}
