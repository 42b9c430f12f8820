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
#include "tools/loader.h"

#include <QCoreApplication>
#include <QMap>
#include <QTemporaryDir>
#include <atomic>
#include <cstdio>
#include <random>

namespace {
using std::chrono::milliseconds;

constexpr milliseconds LINK_TIMEOUT(100);
constexpr int SLAVE = 17;
const char* const ENDINGS[] = {"none",
                               "upgraded",
                               "aborted",
                               "file not read",
                               "no information",
                               "wrong firmware",
                               "no boot information",
                               "not in boot",
                               "send failed",
                               "verify failed"};

struct Weather
{
    const char* name;
    double noise; // chances
    double twice;
    double reorder;
    bool reboot;
    bool cut;
};
const Weather WEATHERS[] = {
    {"doubled", 0, 0.05, 0, false, false},
    {"doubled, reordered", 0, 0.05, 0.05, false, false},
    {"noise", 0.01, 0, 0, false, false},
    {"noise, doubled, reordered", 0.01, 0.03, 0.03, false, false},
    {"noise, reboot", 0.01, 0, 0, true, false},
    {"noise, cut", 0.01, 0, 0, false, true},
    {"all", 0.01, 0.03, 0.03, true, true},
};

struct Scene
{
    QByteArray file;
    QByteArray old_image;
    BootSettings boot;
    bool rtu;
    ExchangeSettings exchange;
    FaultSettings faults;
};

template <typename Value, size_t size>
Value one_of(std::mt19937_64& random, const Value (&values)[size])
{
    return values[random() % size];
}

QByteArray random_file(std::mt19937_64& random, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(random() & 0xFF);
    return bytes;
}

Scene draw_scene(quint64 seed)
{
    std::mt19937_64 random(seed);
    Scene scene;
    const Weather& weather = WEATHERS[seed % std::size(WEATHERS)];
    scene.file = random_file(random, int(random() % 40'000));
    scene.old_image = scene.file;
    const quint64 widest_gap = one_of(random, {quint64(500), quint64(8000), quint64(60000)});
    for (int i = 0; i < scene.file.size(); i += 1 + int(random() % widest_gap))
        scene.old_image[i] = char(~scene.old_image[i]);
    scene.old_image.resize(int(random() % 50'000));
    scene.boot.page = one_of(random, {quint16(256), quint16(1024), quint16(4096)});
    scene.boot.mtu = one_of(random, {quint16(128), quint16(512), quint16(1024)});
    scene.boot.in_boot = random() % 2;
    scene.rtu = random() % 2;
    scene.boot.framing =
        *Framing::named(scene.rtu ? QStringLiteral("rtu:%1").arg(SLAVE) : QStringLiteral("crc16"));
    scene.exchange.baud = one_of(random, {0, 115200, 921600, 3'000'000});
    scene.exchange.start_time = milliseconds(1);
    const int exchanges = 10 + int(scene.file.size() / scene.boot.mtu);
    if (weather.reboot)
        scene.exchange.reboot_after = 2 + qint64(random() % quint64(exchanges));
    if (weather.cut)
        scene.exchange.cut_after = 2 + qint64(random() % quint64(exchanges));
    scene.faults.seed = seed;
    scene.faults.drop = weather.noise;
    scene.faults.corrupt = weather.noise;
    scene.faults.delay_chance = weather.noise;
    scene.faults.twice = weather.twice;
    scene.faults.reorder = weather.reorder;
    // A little too late, and later than the first repeat.
    scene.faults.delay = one_of(random, {LINK_TIMEOUT + milliseconds(5), LINK_TIMEOUT * 5 / 2});
    if (weather.noise == 0) { // a second copy may cross the next request
        scene.faults.delay = milliseconds(2);
        scene.faults.delay_chance = 0.5;
    }
    return scene;
}

// A device on its line, and the stack that speaks to it.
struct Stack
{
    explicit Stack(const Scene& scene)
        : exchange(std::make_unique<Boot>(scene.boot), scene.exchange, scene.faults)
        , link(exchange, scene.exchange.baud, LINK_TIMEOUT)
        , null(&link)
        , crc(&null)
        , rtu(&null)
        , loader(scene.rtu ? static_cast<QFramer*>(&rtu) : &crc)
    {
        rtu.slave_set(SLAVE);
        loader.retry_count_set(4);
        loader.reset_wait_ms_set(2);
        loader.verify_wait_ms_set(10);
    }

    Exchange exchange;
    SimulatedLink link;
    QFramerNull null;
    QFramerCrc16 crc;
    QFramerRtu rtu;
    Loader loader;
};

// One run; None when it doesn't end properly.
LoaderEnding upgrade(Loader& loader, const QString& file)
{
    int ends = 0;
    QObject run;
    QObject::connect(
        &loader, &Loader::upgrade_done, &run, [&] { ++ends; }, Qt::DirectConnection);
    // ThreadSanitizer doesn't see Qt's own order of a thread's end and the wait for it.
    std::atomic<bool> ended = false;
    QObject::connect(
        &loader, &Loader::finished, &run, [&] { ended = true; }, Qt::DirectConnection);
    loader.filename_set(file);
    loader.upgrade_start();
    loader.wait();
    return ended && ends == 1 ? loader.outcome().ending : LoaderEnding::None;
}

struct Outcome
{
    LoaderEnding ending = LoaderEnding::None;
    bool equal = false;      // the device held the file
    bool rerun_good = false; // so it did after a rerun on a good line
};

Outcome brave(quint64 seed, const QTemporaryDir& folder)
{
    Scene scene = draw_scene(seed);
    const QString file = folder.filePath("M1_storm.bin");
    scene.boot.image = folder.filePath("rom");
    file_write(file, scene.file);
    file_write(scene.boot.image, scene.old_image);
    Stack stack(scene);
    Outcome outcome;
    outcome.ending = upgrade(stack.loader, file);
    outcome.equal = file_content(scene.boot.image) == scene.file;
    stack.exchange.end_faults();
    if (stack.link.cut()) {
        stack.link.close();
        stack.link.open();
    }
    outcome.rerun_good = upgrade(stack.loader, file) == LoaderEnding::Upgraded &&
                         file_content(scene.boot.image) == scene.file;
    return outcome;
}

struct Row
{
    int runs = 0;
    int equal = 0;
    int reruns_good = 0;
};

void print_table(const QMap<QString, Row>& table)
{
    std::printf("%-26s %-20s %6s %6s %12s\n", "faults", "the loader reports", "runs", "equal",
                "reruns good");
    for (auto it = table.begin(); it != table.end(); ++it)
        std::printf("%-26s %-20s %6d %6d %12d\n", qPrintable(it.key().section('|', 0, 0)),
                    qPrintable(it.key().section('|', 1)), it->runs, it->equal, it->reruns_good);
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int count = arguments.value(1, "1000").toInt();
    const quint64 first = arguments.value(2, "1").toULongLong();
    const QTemporaryDir folder;

    QMap<QString, Row> table;
    bool good = count > 0;
    for (quint64 seed = first; seed < first + quint64(count); ++seed) {
        const Outcome outcome = brave(seed, folder);
        Row& row = table[WEATHERS[seed % std::size(WEATHERS)].name + QString("|") +
                         ENDINGS[int(outcome.ending)]];
        ++row.runs;
        row.equal += outcome.equal;
        row.reruns_good += outcome.rerun_good;
        const bool false_success = outcome.ending == LoaderEnding::Upgraded && !outcome.equal;
        if (false_success || !outcome.rerun_good) {
            std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed),
                        false_success ? "said to be verified, and the image differs"
                                      : "a rerun on a good line failed");
            good = false;
        }
    }
    print_table(table);
    return good ? 0 : 1;
}
