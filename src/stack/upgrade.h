// One upgrade of one module, on the thread of its link.
#pragma once

#include "stack/linkproblem.h"
#include "tools/loader.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <mutex>

class Stack;

struct UpgradeSettings
{
    int packet = 1024; // most bytes of the file in one packet; the module may take fewer
    int attempts = 5;  // for each packet and each question
    int interval_ms = 0;
    int reset_wait_ms = 2000;  // a reset and the start of the boot code
    int verify_wait_ms = 1000; // a CRC over the whole flash
};

struct UpgradeReport
{
    LoaderOutcome outcome;
    LinkProblem link = {LinkTrouble::NoAnswer, {}}; // how the link looked at the end
    int file_size = 0;
    std::int64_t elapsed_ms = 0;
    std::int64_t wire_bytes = 0; // that were sent
};

class Upgrade
{
public:
    // Connects to signals of the loader, directly, before its run.
    using Watch = std::function<void(Loader& loader)>;

    // On an open stack, whose sink gets what the loader logs. Comes back at the end of the run.
    UpgradeReport run(Stack& stack, const QString& file, const UpgradeSettings& settings,
                      const Watch& watch);
    // From any thread, also before the run.
    void abort();

private:
    void loader_set(Loader* running);

    std::mutex mutex; // guards the two below
    Loader* loader = nullptr;
    bool abort_asked = false;
};
