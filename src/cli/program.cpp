#include "cli/program.h"

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/helptext.h"
#include "cli/stackoptions.h"

#include <algorithm>
#include <optional>

namespace {
const char VERSION[] = TARNWICK_VERSION;

bool takes_value(const QList<QCommandLineOption>& options, const QString& word)
{
    return std::any_of(options.cbegin(), options.cend(), [&](const QCommandLineOption& option) {
        return !option.valueName().isEmpty() && word.startsWith("--") &&
               option.names().contains(word.mid(2));
    });
}

// The options with their values, and after "--" all other words: there the parser takes a number
// such as -5 as it is, not as an option.
QStringList options_first(const QList<QCommandLineOption>& options, const QStringList& words)
{
    QStringList result;
    QStringList others = {"--"};
    for (int i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (word == "--")
            return result + others + words.mid(i + 1);
        if (word.size() < 2 || word[0] != '-' || word[1].isDigit()) {
            others.append(word);
            continue;
        }
        result.append(word);
        if (!takes_value(options, word))
            continue;
        if (i + 1 == words.size())
            return result; // the parser says that its value is missing
        result.append(words[++i]);
    }
    return result + others;
}

// The command that the words begin with; no command's name begins another's.
const Command* find_command(const QList<Command>& commands, const QStringList& words)
{
    const auto fits = [&](const Command& command) {
        return words.mid(0, command.name.count(' ') + 1).join(' ') == command.name;
    };
    const auto found = std::find_if(commands.cbegin(), commands.cend(), fits);
    return found == commands.cend() ? nullptr : &*found;
}

bool is_family(const QList<Command>& commands, const QString& word)
{
    return std::any_of(commands.cbegin(), commands.cend(),
                       [&](const Command& command) { return command.name.startsWith(word + ' '); });
}

void print(const QString& text, const QJsonObject& json, Console& console)
{
    console.bytes(text.toLocal8Bit());
    console.result(json);
}

int report(const Failure& failure, Console& console)
{
    console.end_progress();
    console.note("tarnwickctl: " + failure.what);
    if (!failure.advice.isEmpty())
        console.note(failure.advice);
    const ExitCodeRow* row =
        std::find_if(std::begin(EXIT_CODES), std::end(EXIT_CODES),
                     [&](const ExitCodeRow& row) { return row.code == failure.code; });
    QJsonObject result = failure.partial_result;
    result["error"] = QJsonObject{{"exit", int(failure.code)},
                                  {"name", row->name},
                                  {"message", failure.what},
                                  {"advice", failure.advice}};
    console.result(result);
    return int(failure.code);
}

int wrong_command(const QList<Command>& commands, const QStringList& words, Console& console)
{
    const QString first = words.value(0);
    if (is_family(commands, first)) {
        const QString second = words.value(1);
        const QString what = second.isEmpty() || second.startsWith('-')
                                 ? first + " needs a word more"
                                 : "no such command: " + first + ' ' + second;
        return report(usage_failure(what, family_help(commands, first).trimmed()), console);
    }
    return report(
        usage_failure("no such command: " + first, "`tarnwickctl --help` lists the commands."),
        console);
}

// Nothing for what is no command.
std::optional<QString> help_text(const QList<Command>& commands, const QStringList& names)
{
    if (names.isEmpty() || names[0] == "help")
        return overview(commands);
    if (const Command* command = find_command(commands, names))
        return command_help(*command);
    if (names.size() == 1 && is_family(commands, names[0]))
        return family_help(commands, names[0]);
    if (names == QStringList("stack"))
        return stack_help();
    return std::nullopt;
}

bool asks_for_help(const QStringList& words)
{
    return words.isEmpty() || words[0] == "help" || words.contains("--help") ||
           words.contains("-h");
}

int print_help(const QList<Command>& commands, const QStringList& words, Console& console)
{
    const QStringList asked = words.mid(words.value(0) == "help" ? 1 : 0);
    const auto option = std::find_if(asked.cbegin(), asked.cend(),
                                     [](const QString& word) { return word.startsWith('-'); });
    const QStringList names = asked.mid(0, int(option - asked.cbegin()));
    const std::optional<QString> text = help_text(commands, names);
    if (!text)
        return wrong_command(commands, names, console);
    print(*text, {{"help", *text}}, console);
    return int(words.isEmpty() ? ExitCode::Usage : ExitCode::Done);
}

int run_command(const Command& command, const QStringList& words, Console& console)
{
    QCommandLineParser parser;
    const QList<QCommandLineOption> options = options_of(command);
    parser.addOptions(options);
    if (!parser.parse(QStringList("tarnwickctl") + options_first(options, words)))
        return report(usage_failure(parser.errorText(),
                                    "`tarnwickctl " + command.name + " --help` lists the options."),
                      console);
    Interrupts interrupts;
    Invocation invocation(command, parser, parser.positionalArguments(), console, interrupts);
    try {
        command.run(invocation);
    } catch (Failure& failure) {
        // Whatever an exchange failed with, the user had already asked for the end.
        if (interrupts.raised())
            failure.code = ExitCode::Interrupted;
        throw;
    }
    console.end_progress();
    if (!console.flush())
        throw Failure{ExitCode::File, "the result could not be written to the end",
                      "Look for a full disk behind the output."};
    return int(ExitCode::Done);
}
} // namespace

int run_tarnwickctl(const QStringList& arguments)
{
    const QList<Command> commands = all_commands();
    Console console(arguments.contains("--json"));
    if (arguments.value(0) == "--version") {
        print(QString("tarnwickctl ") + VERSION + '\n', {{"version", VERSION}}, console);
        return int(ExitCode::Done);
    }
    if (asks_for_help(arguments))
        return print_help(commands, arguments, console);

    try {
        const Command* command = find_command(commands, arguments);
        if (!command)
            return wrong_command(commands, arguments, console);
        return run_command(*command, arguments.mid(command->name.count(' ') + 1), console);
    } catch (const Failure& failure) {
        return report(failure, console);
    }
}
