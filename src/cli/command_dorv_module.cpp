// tarnwickctl dorv mode, reboot, reset, search, rssi, quality: a Dorv module itself.
#include "cli/session.h"
#include "framers/qframerchan.h"
#include "stack/typedtext.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>

namespace {
constexpr int LONGEST_DURATION_S = 86400;

struct Mode
{
    const char* name = nullptr;
    int (DorvCfg::*set)() = nullptr;
    int (DorvCfg::*is)() = nullptr;
};
constexpr Mode MODES[] = {
    {"radio", &DorvCfg::mode_radio_set, &DorvCfg::mode_is_radio},
    {"pmac", &DorvCfg::mode_pmac_set, &DorvCfg::mode_is_pmac},
    {"mac", &DorvCfg::mode_mac_set, &DorvCfg::mode_is_mac},
    {"command", &DorvCfg::command_mode_enter, nullptr},
};

QString read_mode(DorvSession& session, const Interrupts& interrupts)
{
    for (const Mode& mode : MODES) {
        if (mode.is && (session.cfg.*mode.is)() == 0)
            return mode.name;
        interrupts.check();
        if (session.cfg.outcome() == DorvOutcome::NoReply)
            break; // a silent module would be silent twice more
    }
    throw session.failure("the mode can't be read");
}

void set_mode(DorvSession& session, const Mode& mode)
{
    const QString what = QStringLiteral("mode %1 can't be set").arg(mode.name);
    (session.cfg.*mode.set)();
    session.check(what);
    if (!mode.is)
        return;
    (session.cfg.*mode.is)(); // as any reply but an error counts as a yes
    session.check(what);
}

const Mode* mode_of(const Invocation& invocation)
{
    if (invocation.argument_count() == 0)
        return nullptr;
    const QString name = invocation.argument(0, "MODE");
    for (const Mode& mode : MODES) {
        if (name == QLatin1String(mode.name))
            return &mode;
    }
    throw usage_failure("no such mode: " + name, "A mode is radio, pmac, mac or command.");
}

void run_mode(Invocation& invocation)
{
    const Mode* mode = mode_of(invocation);
    invocation.expect_at_most(1);
    DorvSession session(invocation);
    if (mode)
        set_mode(session, *mode);
    const QString name = mode ? mode->name : read_mode(session, invocation.interrupts);
    invocation.console.line(name);
    invocation.console.result({{"mode", name}});
}

void carry_out(int (DorvCfg::*operation)(), DorvSession& session, Console& console,
               const char* what, const char* done)
{
    (session.cfg.*operation)();
    session.check(what);
    console.line(done);
    console.result({{"result", done}});
}

void run_reboot(Invocation& invocation)
{
    invocation.expect_at_most(0);
    DorvSession session(invocation);
    carry_out(&DorvCfg::module_reboot, session, invocation.console, "the module can't be restarted",
              "restarted");
}

void run_reset(Invocation& invocation)
{
    invocation.expect_at_most(0);
    DorvSession session(invocation);
    if (!invocation.has("yes"))
        invocation.confirm("All settings of the module will be lost.");
    carry_out(&DorvCfg::factory_reset, session, invocation.console, "the settings can't be reset",
              "reset to factory settings");
}

void run_search(Invocation& invocation)
{
    invocation.expect_at_most(0);
    const std::int64_t duration_ms = 1000 * invocation.number("duration", 0, LONGEST_DURATION_S);
    DorvSession session(invocation);
    // The search listens below its framer; this one adds nothing and has the real ones below.
    QFramerChan listener(&session.connection.stack.top());
    session.cfg.framer_set(&listener);

    QJsonArray found;
    QEventLoop loop;
    QObject::connect(&session.cfg, &DorvCfg::dev_found, &loop, [&](int, int, const QString& info) {
        invocation.console.line(info);
        found.append(info);
    });
    QElapsedTimer clock;
    clock.start();
    // The look that begins after the end is the last one: it reads the rest of a report that came
    // just before.
    QObject::connect(&session.cfg, &DorvCfg::search_progress, &loop, [&] {
        if (clock.elapsed() >= duration_ms)
            loop.quit();
    });
    // Silence ends a search, not the time to listen. Nothing more comes from a link that is lost.
    const Stack& stack = session.connection.stack;
    QObject::connect(&session.cfg, &DorvCfg::search_finished, &loop, [&] {
        if (stack.lost())
            loop.quit();
        else
            session.cfg.search_start();
    });
    QObject::connect(&invocation.interrupts, &Interrupts::interrupted, &loop, &QEventLoop::quit);
    session.cfg.search_start();
    loop.exec();

    const QJsonObject result = {{"devices", found}};
    if (invocation.interrupts.raised())
        throw Failure{ExitCode::Interrupted, "the search was stopped", {}, result};
    if (stack.lost()) {
        Failure failure = no_answer(stack, "the search ended early", {});
        failure.partial_result = result;
        throw failure;
    }
    if (found.isEmpty())
        invocation.console.note("No device reported itself.");
    invocation.console.result(result);
}

std::int64_t address_of(const Invocation& invocation, std::int64_t most)
{
    invocation.expect_at_most(1);
    const QString text = invocation.argument(0, "ADDRESS");
    const auto address = number_in(text, 0, most);
    if (!address)
        throw usage_failure(
            QStringLiteral(
                "\"%1\": ADDRESS is a number from 0 to %2, decimal or hexadecimal as in 0x1F")
                .arg(text, QString::number(most)));
    return *address;
}

void run_rssi(Invocation& invocation)
{
    const auto address = std::uint32_t(address_of(invocation, UINT32_MAX));
    DorvSession session(invocation);
    const QString rssi = session.cfg.rssi_get(address).trimmed();
    session.check("the signal strength can't be read");
    invocation.console.line(rssi);
    invocation.console.result({{"rssi", rssi}});
}

void run_quality(Invocation& invocation)
{
    const auto address = std::uint16_t(address_of(invocation, UINT16_MAX));
    DorvSession session(invocation);
    float values[4] = {};
    session.cfg.comm_quality_get(address, &values[0], &values[1], &values[2], &values[3]);
    session.check("the quality of the link can't be read");
    QJsonArray list;
    QStringList words;
    for (const float value : values) {
        list.append(double(value));
        words.append(QString::number(double(value)));
    }
    invocation.console.line(words.join(' '));
    invocation.console.result({{"quality", list}});
}
} // namespace

QList<Command> dorv_module_commands()
{
    return {
        {"dorv mode",
         "[radio|pmac|mac|command]",
         "Read or change the mode of a Dorv module.",
         "Prints which of the modes radio, pmac and mac the module works in, or changes it. In\n"
         "the mode command a module that is busy with radio traffic takes settings; the mode it\n"
         "works in stays, and is what the module reports.",
         {},
         Needs::Stack,
         run_mode},
        {"dorv reboot",
         "",
         "Restart a Dorv module.",
         "Restarts the module.",
         {},
         Needs::Stack,
         run_reboot},
        {"dorv reset",
         "",
         "Bring a Dorv module back to its factory settings.",
         "Brings all settings of the module back to those it left the factory with. What was set\n"
         "is lost, so that it asks first when a person is at a terminal.",
         {{"yes", "Don't ask."}},
         Needs::Stack,
         run_reset},
        {"dorv search",
         "",
         "Listen for Dorv devices that report themselves.",
         "Listens for what devices report of themselves, and sends nothing.\n\n"
         "  tarnwickctl dorv search --duration 30 --link serial:/dev/ttyUSB0,9600",
         {{"duration", "How long to listen.", "seconds", "5"}},
         Needs::Stack,
         run_search},
        {"dorv rssi",
         "ADDRESS",
         "Ask a Dorv module for the signal strength of a device.",
         "Prints the signal strength that the module reports of a device. ADDRESS is a number,\n"
         "decimal, or hexadecimal as in 0x1F.",
         {},
         Needs::Stack,
         run_rssi},
        {"dorv quality",
         "ADDRESS",
         "Ask a Dorv module for the quality of its link to a device.",
         "Prints four numbers of the module's report on its link to a device: its fields 4, 5, 1\n"
         "and 2, counted from 0.",
         {},
         Needs::Stack,
         run_quality},
    };
}
