// tarnwickctl dorv: settings and queries of a Dorv radio module.
#include "command.h"

#include "atreply.h"
#include "dorvcfg.h"
#include "dorvsettings.h"
#include "hexbytes.h"
#include "qframerchan.h"
#include "stackoptions.h"
#include "usage.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>

namespace {
constexpr int LONGEST_DURATION_S = 86400;
const char NO_ANSWER_ADVICE[] = "Is the module on and in command mode? `tarnwickctl dorv mode "
                                "command` asks for that. Check the "
                                "port, its rate and format, or wait longer with --timeout.";

QString visible(const QByteArray& reply)
{
    return QString::fromLatin1(reply.trimmed()).replace('\r', "\\r").replace('\n', "\\n");
}

// The way to the module: the link opened, and the operations on it.
struct Session
{
    explicit Session(const Invocation& invocation)
        : connection(invocation)
        , cfg(&connection.stack.link())
    {
        const QString frame = invocation.text("frame");
        for (const FramerSpec& framer : parse_framers(frame).value) {
            if (framer.kind == FramerKind::Dorv)
                parsed_or_usage(
                    "--frame", frame,
                    Parsed<bool>{true,
                                 framer.piece.error("the settings are no payload: without dorv")});
        }
        cfg.framer_set(&connection.stack.top());
        connection.stack.open();
    }

    // Why an operation failed: what the module said, or that it was silent.
    Failure failure(const QString& what)
    {
        const QByteArray reply = connection.stack.link().last_received();
        if (reply.trimmed().isEmpty() || connection.stack.link().failed())
            return connection.stack.no_answer(what, NO_ANSWER_ADVICE);
        return {ExitCode::Refused, what + ": the module answered \"" + visible(reply) + '"', {}};
    }

    // Some operations take any reply for a yes.
    void check(int result, const QString& what)
    {
        const QByteArray reply = connection.stack.link().last_received().toLower();
        if (result != 0 || reply.contains("err"))
            throw failure(what);
    }

    Connection connection;
    DorvCfg cfg;
};

const DorvSetting& setting_of(const Invocation& invocation)
{
    const QString name = invocation.argument(0, "NAME");
    const DorvSetting* setting = find_dorv_setting(name);
    if (!setting)
        throw usage_failure("no such setting: " + name,
                            "`tarnwickctl dorv list` shows all settings.");
    return *setting;
}

// The operations for EUIs and keys take what a reply spells, however little.
bool spells_all(const DorvSetting& setting, const QByteArray& reply)
{
    const int bytes = setting.fields[0].bytes;
    if (bytes == 0)
        return true;
    const Parsed<QByteArray> eui = parse_hex_bytes(QString::fromLatin1(reply.left(2 * bytes)));
    return at_key(reply).size() == bytes || (!eui.error && eui.value.size() == bytes);
}

QStringList read_setting(Session& session, const DorvSetting& setting)
{
    const QString what = QString(setting.name) + " can't be read";
    DorvValues values;
    const int result = setting.get(session.cfg, values);
    const QByteArray reply = session.connection.stack.link().last_received();
    if (reply.startsWith("at+"))
        throw Failure{ExitCode::Refused, what + ": the module echoes what it is sent",
                      "Turn that off first, with `tarnwickctl dorv set echo off`."};
    if (result != 0 || !spells_all(setting, reply))
        throw session.failure(what);
    return dorv_words(setting, values);
}

void run_get(Invocation& invocation)
{
    const DorvSetting& setting = setting_of(invocation);
    invocation.expect_at_most(1);
    if (!setting.get)
        throw usage_failure(QString(setting.name) + " can be set, not read",
                            "`tarnwickctl dorv list` marks what can be read.");
    Session session(invocation);
    const QStringList words = read_setting(session, setting);
    invocation.console.line(words.join(' '));
    invocation.console.result(
        {{"setting", setting.name}, {"values", QJsonArray::fromStringList(words)}});
}

void run_set(Invocation& invocation)
{
    const DorvSetting& setting = setting_of(invocation);
    const QStringList words = invocation.arguments_from(1);
    const DorvValues values = parse_dorv_values(setting, words);
    Session session(invocation);
    session.check(setting.set(session.cfg, values), QString(setting.name) + " can't be set");
    invocation.console.line(QString(setting.name) + " set to " + words.join(' '));
    invocation.console.result(
        {{"setting", setting.name}, {"values", QJsonArray::fromStringList(words)}});
}

void list_settings(Console& console)
{
    constexpr int MEANING_COLUMN = 35;
    QJsonArray list;
    for (const DorvSetting& setting : dorv_settings()) {
        const bool readable = setting.get != nullptr;
        console.line(QString(setting.name).leftJustified(12) +
                     (readable ? "get set  " : "    set  ") +
                     QString(setting.meaning).leftJustified(MEANING_COLUMN) + form_of(setting));
        list.append(QJsonObject{{"setting", setting.name},
                                {"takes", form_of(setting)},
                                {"meaning", setting.meaning},
                                {"readable", readable}});
    }
    console.result({{"settings", list}});
}

void run_list(Invocation& invocation)
{
    invocation.expect_at_most(0);
    if (!invocation.has("link"))
        return list_settings(invocation.console);
    Session session(invocation);
    QJsonObject settings;
    for (const DorvSetting& setting : dorv_settings()) {
        if (!setting.get)
            continue;
        const QStringList words = read_setting(session, setting);
        invocation.console.line(QString(setting.name).leftJustified(12) + words.join(' '));
        settings[setting.name] = QJsonArray::fromStringList(words);
        invocation.interrupts.check();
    }
    invocation.console.result({{"settings", settings}});
}

struct Mode
{
    const char* name;
    int (DorvCfg::*set)();
    int (DorvCfg::*is)();
};
constexpr Mode MODES[] = {
    {"radio", &DorvCfg::mode_radio_set, &DorvCfg::mode_is_radio},
    {"pmac", &DorvCfg::mode_pmac_set, &DorvCfg::mode_is_pmac},
    {"mac", &DorvCfg::mode_mac_set, &DorvCfg::mode_is_mac},
    {"command", &DorvCfg::command_mode_enter, nullptr},
};

QString read_mode(Session& session, const Interrupts& interrupts)
{
    for (const Mode& mode : MODES) {
        if (mode.is && (session.cfg.*mode.is)() == 0)
            return mode.name;
        interrupts.check();
        if (session.connection.stack.link().last_received().isEmpty())
            break; // a silent module would be silent twice more
    }
    throw session.failure("the mode can't be read");
}

void set_mode(Session& session, const Mode& mode)
{
    session.check((session.cfg.*mode.set)(), QStringLiteral("mode %1 can't be set").arg(mode.name));
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
    Session session(invocation);
    if (mode)
        set_mode(session, *mode);
    const QString name = mode ? mode->name : read_mode(session, invocation.interrupts);
    invocation.console.line(name);
    invocation.console.result({{"mode", name}});
}

template <int (DorvCfg::*operation)()>
void run_plain(Invocation& invocation, const char* what, const char* done)
{
    invocation.expect_at_most(0);
    Session session(invocation);
    session.check((session.cfg.*operation)(), what);
    invocation.console.line(done);
    invocation.console.result({{"result", done}});
}

void run_reboot(Invocation& invocation)
{
    run_plain<&DorvCfg::module_reboot>(invocation, "the module can't be restarted", "restarted");
}

void run_reset(Invocation& invocation)
{
    run_plain<&DorvCfg::factory_reset>(invocation, "the settings can't be reset",
                                       "reset to factory settings");
}

void run_search(Invocation& invocation)
{
    invocation.expect_at_most(0);
    const qint64 duration_ms = 1000 * invocation.number("duration", 0, LONGEST_DURATION_S);
    Session session(invocation);
    // The search listens below its framer; this one adds nothing and has the real ones below.
    QFramerChan listener(&session.connection.stack.top());
    session.cfg.framer_set(&listener);

    QJsonArray found;
    QEventLoop loop;
    QObject::connect(&session.cfg, &DorvCfg::dev_found, &loop, [&](int, int, const QString& info) {
        invocation.console.line(info);
        found.append(info);
    });
    // A search ends at the first silence; it goes on from there until the time is over.
    QElapsedTimer clock;
    clock.start();
    // Queued, as the search stops its timer behind that signal.
    QObject::connect(
        &session.cfg, &DorvCfg::search_finished, &loop,
        [&] {
            if (clock.elapsed() < duration_ms)
                session.cfg.search_start();
            else
                loop.quit();
        },
        Qt::QueuedConnection);
    QObject::connect(&invocation.interrupts, &Interrupts::interrupted, &loop, &QEventLoop::quit);
    session.cfg.search_start();
    loop.exec();

    const QJsonObject result = {{"devices", found}};
    if (invocation.interrupts.raised())
        throw Failure{ExitCode::Interrupted, "the search was stopped", {}, result};
    if (found.isEmpty())
        invocation.console.note("No device reported itself.");
    invocation.console.result(result);
}

qint64 address_of(const Invocation& invocation, qint64 most)
{
    invocation.expect_at_most(1);
    const QString text = invocation.argument(0, "ADDRESS");
    const auto address = number_in(text, 0, most);
    if (!address)
        throw usage_failure(QStringLiteral("\"%1\": ADDRESS is a number from 0 to %2, or behind 0x")
                                .arg(text)
                                .arg(most));
    return *address;
}

void run_rssi(Invocation& invocation)
{
    const auto address = quint32(address_of(invocation, UINT32_MAX));
    Session session(invocation);
    const QString rssi = session.cfg.rssi_get(address).trimmed();
    if (rssi == "N/A")
        throw session.failure("the signal strength can't be read");
    invocation.console.line(rssi);
    invocation.console.result({{"rssi", rssi}});
}

void run_quality(Invocation& invocation)
{
    const auto address = quint16(address_of(invocation, UINT16_MAX));
    Session session(invocation);
    float values[4] = {};
    const int result =
        session.cfg.comm_quality_get(address, &values[0], &values[1], &values[2], &values[3]);
    if (result != 0)
        throw session.failure("the quality of the link can't be read");
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

QList<Command> dorv_commands()
{
    return {
        {"dorv get",
         "NAME",
         "Read a setting of a Dorv module.",
         "Reads a setting of a Dorv module. `tarnwickctl dorv list` shows which there are.\n\n"
         "  tarnwickctl dorv get deveui --link serial:/dev/ttyUSB0,9600",
         {},
         Needs::Stack,
         run_get},
        {"dorv set",
         "NAME VALUE...",
         "Change a setting of a Dorv module.",
         "Changes a setting of a Dorv module. `tarnwickctl dorv list` shows which there are and\n"
         "what they take. The module itself checks the values.\n\n"
         "  tarnwickctl dorv set freq 470300000 --link serial:/dev/ttyUSB0,9600\n"
         "  tarnwickctl dorv set join otaa 8 --link serial:/dev/ttyUSB0,9600",
         {},
         Needs::Stack,
         run_set},
        {"dorv list",
         "",
         "List the settings of a Dorv module, or read them all.",
         "Without --link: lists the settings, whether they can be read, and what they take.\n"
         "With --link: reads all that can be read from the module.",
         {},
         Needs::Stack,
         run_list},
        {"dorv mode",
         "[radio|pmac|mac|command]",
         "Read or change the mode of a Dorv module.",
         "Prints the mode of the module, or changes it. The mode command is the one in which the\n"
         "module takes settings.",
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
         "Brings all settings of the module back to those it left the factory with.",
         {},
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
         "decimal or behind 0x.",
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
