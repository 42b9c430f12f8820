// The simulator's command line, an argument a line.

#include "fuzzing.h"
#include "options.h"

#include <QCoreApplication>

static bool in(double value, double least, double most)
{
    return value >= least && value <= most;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv); // help texts ask for it
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const ParsedOptions parsed = parse_options(text.split('\n'));
    const Options& options = parsed.options;
    if (!parsed.message.isEmpty())
        return 0;
    require(parsed.ok);
    require(options.listen_port <= 65535 && in(options.baud, 0, 1e8));
    require(in(options.faults.drop, 0, 1) && in(options.faults.corrupt, 0, 1));
    require(in(options.faults.twice, 0, 1) && in(options.faults.reorder, 0, 1));
    require(in(options.faults.delay_chance, 0, 1) && in(options.talk.rate, 0, 1e9));
    require(options.talk.line_length >= SHORTEST_LINE && options.talk.size >= 0);
    require(in(options.boot.rom_size, 1, 1 << 30) && options.boot.name.size() <= 115);
    require(options.cnet_neighbours.size() <= qMax(1000, int(size)));
    for (const CnetDevice& device : options.cnet_neighbours)
        require(in(device.channel, 9, 30) && in(device.rate, 0, 2));
    return 0;
}
