// Aborts that fall into each phase of an upgrade, and a Loader deleted in the middle of one.

#include "bootmodule.h"

#include <gtest/gtest.h>

namespace {

// Whether the run came as far as a request with this number; aborts it there, if so.
bool aborted_at(Bench& bench, int request)
{
    bench.gate.close_at(request);
    bench.loader.upgrade_start();
    const bool reached =
        wait_until([&] { return bench.gate.is_reached() || bench.loader.isFinished(); });
    const bool aborted = reached && bench.gate.is_reached();
    bench.loader.abort();
    bench.gate.release();
    bench.finish();
    return aborted;
}

} // namespace

TEST(LoaderAbort, EndsEveryPhaseWithoutRebootAndLeavesTheNextRunAlone)
{
    constexpr int ALL_REQUESTS = 3 + 3 + 10 + 1 + 1; // a b a, page checks, packets, final, reboot
    int aborts = 0;
    for (int request = 1;; ++request) {
        SCOPED_TRACE(request);
        Bench bench;
        bench.choose("M1_1.bin", firmware());
        if (!aborted_at(bench, request))
            break;
        ++aborts;
        const QStringList transcript = bench.transcript.take();
        EXPECT_EQ(transcript.last(), "done");
        if (request < ALL_REQUESTS) { // the last one is the reboot, under way already
            EXPECT_FALSE(transcript.contains("> 63"));
            EXPECT_FALSE(transcript.contains("box File sent and verified OK"));
            // Requests of the phase in which it fell may follow, those of a later one don't.
            const int more = request <= 2 ? 2 - request : 0;
            EXPECT_EQ(transcript.filter("> ").size(), request + more);
            const char* outcome = request <= 2 ? "ldr: Upgrade progress aborted"
                                  : request < 14
                                      ? "ldr: Firmware send failed, please retry"
                                      : "box File verify failed"; // from the last page on
            EXPECT_TRUE(transcript.contains(outcome)) << transcript.join('\n').toStdString();
        }
        bench.gate.close_at(0);
        EXPECT_TRUE(bench.run().contains("box File sent and verified OK"));
        EXPECT_EQ(bench.module.flash, firmware());
    }
    EXPECT_EQ(aborts, ALL_REQUESTS);
}

TEST(LoaderAbort, IsTestedBehindTheWaits)
{
    struct Wait
    {
        const char* log; // behind which the run sleeps
        const char* outcome;
    };
    for (const Wait& wait :
         {Wait{"ldr: wait device enter boot ...", "ldr: Upgrade progress aborted"},
          Wait{"ldr: Firmware verify ...", "box File verify failed"}}) {
        Bench bench;
        bench.choose("M1_1.bin", firmware());
        QObject::connect(
            &bench.loader, &Loader::log, &bench.loader,
            [&](const QString& text) {
                if (text == QLatin1String(wait.log))
                    bench.loader.abort();
            },
            Qt::DirectConnection);
        const QStringList transcript = bench.run();
        EXPECT_TRUE(transcript.contains(wait.outcome)) << transcript.join('\n').toStdString();
        EXPECT_FALSE(transcript.contains("> 63"));
        EXPECT_EQ(transcript.last(), "done");
    }
}

#ifndef __SANITIZE_THREAD__ // it can't see the destructor's wait, which is inside Qt
TEST(LoaderAbort, HappensWhenTheLoaderIsDeleted)
{
    auto bench = std::make_unique<Bench>();
    bench->choose("M1_1.bin", firmware());
    bench->gate.close_at(5);
    bench->loader.upgrade_start();
    ASSERT_TRUE(wait_until([&] { return bench->gate.is_reached(); }));
    bench->gate.release();
    bench.reset(); // hangs, or ends the program, when it doesn't
}
#endif
