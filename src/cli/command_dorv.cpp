// tarnwickctl dorv get, set, list: the settings of a Dorv module.
#include "cli/dorvarguments.h"
#include "cli/session.h"

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

QStringList read_setting(DorvSession& session, const DorvSetting& setting)
{
    DorvValues values;
    setting.get(session.cfg, values);
    session.check(setting.name + " can't be read");
    return dorv_words(setting, values);
}

void run_get(Invocation& invocation)
{
    const DorvSetting& setting = setting_of(invocation);
    invocation.expect_at_most(1);
    if (!setting.get)
        throw usage_failure(setting.name + " can be set, not read",
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
    setting.set(session.cfg, values);
    session.check(setting.name + " can't be set");
    invocation.console.line(setting.name + " set to " + words.join(' '));
    invocation.console.result(
        {{"setting", setting.name}, {"values", QJsonArray::fromStringList(words)}});
}

void list_settings(Console& console)
{
    constexpr int MEANING_COLUMN = 35;
    QJsonArray list;
    for (const DorvSetting& setting : dorv_settings()) {
        const bool readable = setting.get != nullptr;
        console.line(setting.name.leftJustified(12) + (readable ? "get set  " : "    set  ") +
                     setting.meaning.leftJustified(MEANING_COLUMN) + form_of(setting));
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
        invocation.console.line(setting.name.leftJustified(12) + words.join(' '));
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
