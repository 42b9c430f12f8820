// Firmware upgrades in bad weather: frames corrupted, lost, doubled and reordered, replies late,
// the device failing and the line cut in the middle. Whenever the loader says that the file was
// verified, the device holds the file; whenever it does not, a rerun on a good line completes.
//
//   upgrade_storm [count] [first seed]
#include "devices/boot.h"
#include "devices/exchange.h"
#include "framers/qframercrc16.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "sandbox.h"
#include "simulatedlink.h"
#include "soak.h"
#include "tools/loader.h"

#include <QMap>
#include <array>
#include <atomic>
#include <cstdint>
#include <random>

namespace {
using std::chrono::milliseconds;

constexpr milliseconds LINK_TIMEOUT(100);
constexpr milliseconds LATE = LINK_TIMEOUT + milliseconds(5); // a little too late
constexpr milliseconds CROSSING(2); // a second copy crosses the next request
constexpr int SLAVE = 17;

struct Weather
{
    const char* name;
    FaultSettings faults; // chances of loss, change, second copy, reordering, delay
    bool reboot;
    bool cut;
};
const Weather WEATHERS[] = {
    {"doubled", {0, 0, 0.05, 0, CROSSING, 0.5}, false, false},
    {"doubled, reordered", {0, 0, 0.05, 0.05, CROSSING, 0.5}, false, false},
    {"noise", {0.01, 0.01, 0, 0, LATE, 0.01}, false, false},
    {"noise, doubled, reordered", {0.01, 0.01, 0.03, 0.03, LATE, 0.01}, false, false},
    {"noise, reboot", {0.01, 0.01, 0, 0, LATE, 0.01}, true, false},
    {"noise, cut", {0.01, 0.01, 0, 0, LATE, 0.01}, false, true},
    {"all", {0.01, 0.01, 0.03, 0.03, LATE, 0.01}, true, true},
};

struct Scene
{
    QByteArray file;
    QByteArray old_image;
    BootSettings boot;
    bool rtu = false;
    ExchangeSettings exchange;
    FaultSettings faults;
};

Scene draw_scene(std::uint64_t seed, const Weather& weather)
{
    std::mt19937_64 random(seed);
    const auto below = [&](int limit) { return int(random() % std::uint64_t(limit)); };
    const auto one_of = [&](std::initializer_list<int> values) {
        return values.begin()[below(int(values.size()))];
    };
    Scene scene;
    for (int more = below(40'000); more > 0; --more)
        scene.file += char(below(256));
    scene.old_image = scene.file;
    const int widest_gap = one_of({500, 8000, 60000});
    for (int i = 0; i < scene.file.size(); i += 1 + below(widest_gap))
        scene.old_image[i] = char(~scene.old_image[i]);
    scene.old_image.resize(below(50'000));
    scene.boot.page = std::uint16_t(one_of({256, 1024, 4096}));
    scene.boot.mtu = std::uint16_t(one_of({128, 512, 1024}));
    scene.boot.in_boot = below(2) == 0;
    scene.rtu = below(2) == 0;
    scene.boot.framing = *Framing::named(scene.rtu ? QString("rtu:%1").arg(SLAVE) : "crc16");
    scene.exchange.baud = one_of({0, 115200, 921600, 3'000'000});
    scene.exchange.start_time = milliseconds(1);
    const int exchanges = 10 + int(scene.file.size()) / scene.boot.mtu;
    scene.exchange.reboot_after = weather.reboot ? 2 + below(exchanges) : -1;
    scene.exchange.cut_after = weather.cut ? 2 + below(exchanges) : -1;
    scene.faults = weather.faults;
    scene.faults.seed = seed;
    if (scene.faults.delay == LATE && below(2) == 0)
        scene.faults.delay = LINK_TIMEOUT * 5 / 2; // later than the first repeat
    return scene;
}

// A device on its line, and the stack that speaks to it.
struct Stack
{
    explicit Stack(const Scene& scene)
        : exchange(std::make_unique<Boot>(scene.boot), scene.exchange, scene.faults)
        , link(exchange, scene.exchange.baud, LINK_TIMEOUT)
        , loader(scene.rtu ? static_cast<QFramer*>(&rtu) : &crc)
    {
        rtu.slave_set(SLAVE);
        loader.retry_count_set(4);
        loader.reset_wait_ms_set(2);
        loader.verify_wait_ms_set(10);
        QObject::connect(&loader, &Loader::finished, [this] { ended = true; });
    }
    LoaderEnding upgrade(const QString& file)
    {
        loader.filename_set(file);
        loader.upgrade_start();
        loader.wait();
        return ended.exchange(false) ? loader.outcome().ending : LoaderEnding::None;
    }

    Exchange exchange;
    SimulatedLink link;
    QFramerNull null{&link};
    QFramerCrc16 crc{&null};
    QFramerRtu rtu{&null};
    std::atomic<bool> ended = false; // ThreadSanitizer doesn't see the order of an end and a wait
    Loader loader;
};

class Storm : public Soak
{
public:
    void run(int count)
    {
        const std::uint64_t first = QCoreApplication::arguments().value(2, "1").toULongLong();
        for (std::uint64_t seed = first; seed < first + std::uint64_t(count); ++seed)
            brave(seed);
        std::printf("%-26s %-20s %6s %6s %12s\n", "faults", "the loader reports", "runs", "equal",
                    "reruns good");
        for (auto it = table.cbegin(); it != table.cend(); ++it)
            std::printf("%-26s %-20s %6d %6d %12d\n", it.key().first.constData(),
                        qPrintable(endings[int(it.key().second)]), (*it)[0], (*it)[1], (*it)[2]);
    }

private:
    void brave(std::uint64_t seed)
    {
        const Weather& weather = WEATHERS[seed % std::size(WEATHERS)];
        Scene scene = draw_scene(seed, weather);
        const QString file = folder.filePath("M1_storm.bin");
        scene.boot.image = folder.filePath("rom");
        file_write(file, scene.file);
        file_write(scene.boot.image, scene.old_image);
        Stack stack(scene);
        const LoaderEnding ending = stack.upgrade(file);
        const bool equal = file_content(scene.boot.image) == scene.file;
        stack.exchange.end_faults();
        if (stack.link.cut())
            stack.link.mend(scene.exchange.baud);
        const bool rerun_good = stack.upgrade(file) == LoaderEnding::Upgraded &&
                                file_content(scene.boot.image) == scene.file;
        expect(ending != LoaderEnding::Upgraded || equal,
               QString("seed %1: said to be verified, and the image differs").arg(seed));
        expect(rerun_good, QString("seed %1: a rerun on a good line failed").arg(seed));
        std::array<int, 3>& row = table[{weather.name, ending}];
        row[0] += 1;
        row[1] += equal;
        row[2] += rerun_good;
    }

    const QStringList endings =
        QString("none|upgraded|aborted|file not read|no information|wrong firmware|"
                "no boot information|not in boot|send failed|verify failed")
            .split('|');
    QTemporaryDir folder;
    // Runs, images that equal the file, and good reruns.
    QMap<std::pair<QByteArray, LoaderEnding>, std::array<int, 3>> table;
};
} // namespace

int main(int argc, char** argv)
{
    return soak_main<Storm, QCoreApplication>(argc, argv, 1000);
}
