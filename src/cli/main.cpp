// tarnwickctl: the device library from a shell.
#include "cli/failure.h"
#include "cli/invocation.h"
#include "cli/linkfailure.h"
#include "serialport/standardstreams.h"

#include <QCoreApplication>
#include <algorithm>

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

Failure unknown_command(const QList<Command>& commands, const QStringList& words)
{
    const QString first = words.value(0);
    if (!is_family(commands, first))
        return usage_failure("no such command: " + first,
                             "`tarnwickctl --help` lists the commands.");
    const QString second = words.value(1);
    const QString what = second.isEmpty() || second.startsWith('-')
                             ? first + " needs a word more"
                             : "no such command: " + first + ' ' + second;
    return usage_failure(what, family_help(commands, first).trimmed());
}

QString help_text(const QList<Command>& commands, const QStringList& names)
{
    if (names.isEmpty() || names[0] == "help")
        return overview(commands);
    if (const Command* command = find_command(commands, names))
        return command_help(*command);
    if (names.size() == 1 && is_family(commands, names[0]))
        return family_help(commands, names[0]);
    if (names == QStringList("stack"))
        return stack_help();
    throw unknown_command(commands, names);
}

bool asks_for_help(const QStringList& words)
{
    return words.isEmpty() || words[0] == "help" || words.contains("--help") ||
           words.contains("-h");
}

void print_help(const QList<Command>& commands, const QStringList& words, Console& console)
{
    const QStringList asked = words.mid(words.value(0) == "help" ? 1 : 0);
    const auto option = std::find_if(asked.cbegin(), asked.cend(),
                                     [](const QString& word) { return word.startsWith('-'); });
    const QStringList names = asked.mid(0, int(option - asked.cbegin()));
    const Command* const command = find_command(commands, names);
    // "upgrade FILE --help" is a command that stops to ask; "help" takes a command's name alone.
    if (command && words[0] == "help" && command->name != names.join(' '))
        throw usage_failure("no such command: " + names.join(' '),
                            "`tarnwickctl --help` lists the commands.");
    const QString text = help_text(commands, names);
    print(text, {{"help", text}}, console);
}

// Throws Failure, also of a link.
void run_with_link(const Command& command, Invocation& invocation)
{
    try {
        command.run(invocation);
    } catch (const LinkProblem& problem) {
        throw open_failure(problem);
    }
}

// An empty variable of a script must not cost the file that was wanted.
void expect_file_names(const QList<QCommandLineOption>& options, const QCommandLineParser& parser)
{
    for (const QCommandLineOption& option : options)
        if (option.valueName() == "file" && parser.values(option).contains(QString()))
            throw usage_failure("--" + option.names().constLast() +
                                ": the name of a file is missing");
}

ExitCode run_command(const Command& command, const QStringList& words, Console& console)
{
    QCommandLineParser parser;
    const QList<QCommandLineOption> options = options_of(command);
    parser.addOptions(options);
    if (!parser.parse(QStringList("tarnwickctl") + options_first(options, words)))
        throw usage_failure(parser.errorText(),
                            "`tarnwickctl " + command.name + " --help` lists the options.");
    expect_file_names(options, parser);
    Interrupts interrupts;
    Invocation invocation(command, parser, parser.positionalArguments(), console, interrupts);
    try {
        run_with_link(command, invocation);
    } catch (Failure& failure) {
        // Whatever an exchange failed with, the user had already asked for the end.
        if (interrupts.raised())
            failure.code = ExitCode::Interrupted;
        throw;
    }
    console.end_progress();
    if (!console.flush())
        throw Failure{ExitCode::File, "the result could not be written to the end",
                      "Is the disk full that the output goes to?"};
    return invocation.ending;
}

QList<Command> all_commands()
{
    QList<Command> commands = ports_commands();
#ifdef Q_OS_UNIX
    commands += monitor_commands();
#endif
    return commands + upgrade_commands() + cnet_commands() + dorv_commands() + frame_commands() +
           capture_commands() + capture_print_commands() + capture_cut_commands() +
           capture_diff_commands() + checksum_commands();
}

// Throws Failure.
ExitCode run(const QStringList& arguments, Console& console)
{
    const QList<Command> commands = all_commands();
    if (arguments.value(0) == "--version") {
        print(QString("tarnwickctl ") + VERSION + '\n', {{"version", VERSION}}, console);
        return ExitCode::Done;
    }
    if (asks_for_help(arguments)) {
        print_help(commands, arguments, console);
        return arguments.isEmpty() ? ExitCode::Usage : ExitCode::Done;
    }
    const Command* command = find_command(commands, arguments);
    if (!command)
        throw unknown_command(commands, arguments);
    return run_command(*command, arguments.mid(command->name.count(' ') + 1), console);
}

void report(const Failure& failure, Console& console)
{
    console.end_progress();
    console.note("tarnwickctl: " + failure.what);
    if (!failure.advice.isEmpty())
        console.note(failure.advice);
    QJsonObject result = failure.partial_result;
    result["error"] = error_object(failure);
    console.result(result);
}
} // namespace

int main(int argc, char** argv)
{
    fill_standard_streams();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    Console console(arguments.contains("--json"));
    try {
        return int(run(arguments, console));
    } catch (const Failure& failure) {
        report(failure, console);
        return int(failure.code);
    }
}
