// tarnwickctl dorv get, set, list: the settings of a Dorv module.
#include "cli/dorvcommands.h"

#include "cli/dorvsettings.h"
#include "cli/hexbytes.h"
#include "cli/usage.h"
#include "tools/atreply.h"

#include <QJsonArray>

namespace {
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

QStringList read_setting(DorvSession& session, const DorvSetting& setting)
{
    const QString what = QString(setting.name) + " can't be read";
    DorvValues values;
    const int result = setting.get(session.cfg, values);
    if (session.reply().startsWith("at+"))
        throw Failure{ExitCode::Refused, what + ": the module echoes what it is sent",
                      "Turn that off first, with `tarnwickctl dorv set echo off`."};
    if (result != 0 || !spells_all(setting, session.reply()))
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
    DorvSession session(invocation);
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
    DorvSession session(invocation);
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
    DorvSession session(invocation);
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
} // namespace

QList<Command> dorv_commands()
{
    const QList<Command> settings = {
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
         Needs::StackOrNothing,
         run_list},
    };
    return settings + dorv_module_commands();
}
