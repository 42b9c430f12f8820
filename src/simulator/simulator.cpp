#include "simulator/simulator.h"

#include "devices/echo.h"
#include "devices/talk.h"
#include "simulator/options.h"
#include "simulator/ptytransport.h"
#include "simulator/runner.h"
#include "simulator/tcptransport.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {
volatile std::sig_atomic_t stop = 0;

// The ending signals are let in only while the loop waits, so that none falls between its test and
// its wait. Gives the mask to wait with.
sigset_t catch_ending_signals()
{
    sigset_t ending, while_waiting;
    sigemptyset(&ending);
    struct sigaction action = {};
    action.sa_handler = [](int) { stop = 1; };
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&ending, signal);
        sigaction(signal, &action, nullptr);
    }
    sigprocmask(SIG_BLOCK, &ending, &while_waiting);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        sigdelset(&while_waiting, signal);
    return while_waiting;
}

// What programs send and files hold may be anything, and no terminal is to obey it.
QByteArray harmless(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control)
            c = '.';
    }
    return text.toLocal8Bit();
}

Journal make_notes(const Options& options)
{
    return [device = options.device, start = Clock::now()](const QString& text) {
        const std::chrono::duration<double> passed = Clock::now() - start;
        std::fprintf(stderr, "%9.4f %s: %s\n", passed.count(), qPrintable(device),
                     harmless(text).constData());
    };
}

Journal make_journal(const Options& options)
{
    return options.verbose ? make_notes(options) : Journal();
}

std::unique_ptr<Module> make_module(const Options& options, const Journal& journal)
{
    if (options.device == "boot")
        return std::make_unique<Boot>(options.boot, journal);
    if (options.device == "cnet")
        return std::make_unique<Cnet>(options.cnet_local, options.cnet_neighbours, journal);
    if (options.device == "dorv")
        return std::make_unique<Dorv>(options.dorv, journal);
    if (options.device == "answer") {
        const Journal notes = make_notes(options);
        CapturedPort port(options.capture, options.capture_port, notes);
        return std::make_unique<Answering>(port, options.answer, notes);
    }
    return nullptr;
}

std::unique_ptr<Device> make_device(const Options& options)
{
    const Journal journal = make_journal(options);
    if (std::unique_ptr<Module> module = make_module(options, journal))
        return std::make_unique<Exchange>(std::move(module), options.exchange, options.faults,
                                          journal);
    if (options.device == "talk")
        return std::make_unique<Talk>(options.talk, options.faults);
    if (options.device == "replay") {
        const Journal notes = make_notes(options);
        auto port = std::make_unique<CapturedPort>(options.capture, options.capture_port, notes);
        return std::make_unique<Replay>(std::move(port), options.replay, options.faults, notes);
    }
    return std::make_unique<Echo>(options.faults);
}

std::unique_ptr<Transport> make_transport(const Options& options)
{
    if (options.listen_port >= 0)
        return std::make_unique<TcpTransport>(options.listen_port);
    return std::make_unique<PtyTransport>(options.name);
}
} // namespace

int run_simulator(const QStringList& arguments)
{
    const ParsedOptions parsed = parse_options(arguments);
    if (!parsed.message.isEmpty()) {
        std::fputs(qUtf8Printable(parsed.message), parsed.ok ? stdout : stderr);
        return parsed.ok ? SIM_ENDED : SIM_BAD_OPTIONS;
    }
    try {
        // A long capture takes seconds to read, which Ctrl-C may end.
        const std::unique_ptr<Device> device = make_device(parsed.options);
        const sigset_t while_waiting = catch_ending_signals();
        const std::unique_ptr<Transport> transport = make_transport(parsed.options);
        std::printf("%s\n", transport->address().constData());
        std::fflush(stdout);
        Runner(*device, *transport, parsed.options.baud).run(stop, while_waiting);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "tarnwick-sim: %s\n", harmless(error.what()).constData());
        return SIM_NO_PORT;
    }
    return SIM_ENDED;
}
