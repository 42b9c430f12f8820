#include "stack/shelltext.h"
#include "stack/typedtext.h"
#include "workbench/settinghints.h"
#include "workbench/settingstable.h"
#include "workbench/settingsverdict.h"
#include "workbench/settingvalue.h"

#include <QProcess>
#include <gtest/gtest.h>
#include <print.h>
#include <sandbox.h>
#include <set>
#include <wait.h>

namespace {
class SettingsTableTest : public testing::Test
{
protected:
    int row(const QString& name) const
    {
        for (int row = 0; row < table.rowCount(); ++row) {
            if (table.setting(row).name == name)
                return row;
        }
        return -1;
    }
    QString cell(const QString& name, SettingsTable::Column column) const
    {
        return table.index(row(name), column).data().toString();
    }
    void type(const QString& name, const QString& text)
    {
        table.setData(table.index(row(name), SettingsTable::VALUE), text, Qt::EditRole);
    }
    void result(const QString& name, SettingTask::Kind kind, DorvOutcome outcome,
                const QString& held, bool differs = false)
    {
        SettingResult result;
        result.setting = find_dorv_setting(name);
        result.kind = kind;
        result.outcome = outcome;
        result.held = held;
        result.differs = differs;
        result.reply = "error\r\n";
        table.result_take(result);
    }
    SettingsTable table{nullptr};
};

constexpr auto READ = SettingTask::Kind::Read;
constexpr auto WRITE = SettingTask::Kind::Write;
} // namespace

TEST_F(SettingsTableTest, ShowsWhatTheModuleHoldsAndKeepsWhatIsTyped)
{
    const struct
    {
        const char* name;
        const char* typed;
        SettingTask::Kind kind;
        DorvOutcome outcome;
        const char* held; // of the result
        bool back_differs;
        const char* value; // that is shown then
        const char* state;
        bool differs;
    } rows[] = {
        {"devaddr", "", READ, DorvOutcome::Done, "0x1a", false, "0x1a", "read", false},
        {"devaddr", "0X1B", READ, DorvOutcome::Done, "0x1a", false, "0x1b", "differs", true},
        {"devaddr", "26", READ, DorvOutcome::Done, "0x1a", false, "0x1a", "read", false},
        {"devaddr", "x", READ, DorvOutcome::Done, "0x1a", false, "x",
         "ADDRESS is a number from 0 to 4294967295", true},
        {"join", "otaa 8", READ, DorvOutcome::Done, "otaa", false, "otaa 8", "differs", true},
        {"join", "otaa 8", WRITE, DorvOutcome::Done, "otaa 8", false, "otaa 8",
         "written, and read back", false},
        {"freq", "1", WRITE, DorvOutcome::Done, "1", false, "1", "written", false},
        {"freq", "1", WRITE, DorvOutcome::Refused, "", false, "1", "refused: error", true},
        {"freq", "1", WRITE, DorvOutcome::NoReply, "", false, "1", "no answer", true},
        {"freq", "1", WRITE, DorvOutcome::Echoed, "", false, "1", "echoed", true},
        {"class", "b", WRITE, DorvOutcome::Done, "a", true, "b", "reads back as something else",
         true},
        {"deveui", "00 01 02 03 04 05 06 07", WRITE, DorvOutcome::Done, "0001020304050607", false,
         "0001020304050607", "written, and read back", false},
    };
    for (const auto& expected : rows) {
        table.module_forget();
        SettingsFile nothing_wanted;
        nothing_wanted.lines.append(SettingLine{find_dorv_setting(expected.name), {}});
        table.file_take(nothing_wanted);
        type(expected.name, expected.typed);
        result(expected.name, expected.kind, expected.outcome, expected.held,
               expected.back_differs);
        EXPECT_EQ(cell(expected.name, SettingsTable::VALUE), expected.value) << expected.typed;
        EXPECT_EQ(cell(expected.name, SettingsTable::STATE), expected.state) << expected.typed;
        EXPECT_EQ(table.differs(row(expected.name)), expected.differs) << expected.typed;
        EXPECT_EQ(cell(expected.name, SettingsTable::HELD), expected.held) << expected.typed;
    }
}

TEST_F(SettingsTableTest, WritesNothingToAnotherModuleUnasked)
{
    result("class", READ, DorvOutcome::Done, "b");
    type("sf", "9");
    table.module_forget();
    EXPECT_EQ(cell("class", SettingsTable::VALUE), "b");
    EXPECT_EQ(cell("class", SettingsTable::HELD), "");
    EXPECT_EQ(table.differing(), QVector<int>{row("sf")});
    EXPECT_EQ(table.writes({row("sf")})[0].values.numbers, QVector<std::int64_t>{9});
    EXPECT_EQ(table.reads({row("sf"), row("class")}).size(), 1);
    const SettingsFile file = table.file();
    EXPECT_EQ(file.lines.size(), 2);
    type("sf", "10");
    EXPECT_EQ(table.replaced_by(file), 1);
}

TEST(SettingsFile, IsReadAsItIsWrittenAndSaysWhatIsWrongWithALine)
{
    const Sandbox sandbox;
    const QString path = sandbox.path("x");
    const struct
    {
        const char* text;
        const char* problem; // or nothing
        const char* written = "";
    } rows[] = {
        {"# of the lab\n\nfreq   470300000\r\njoin otaa\nuartcfg 9600 8 even 1", "",
         "freq        470300000\njoin        otaa\nuartcfg     9600 8 even 1\n"},
        {"deveui 00 11 22 33 44 55 66 aa\ndevaddr 0X1f", "",
         "deveui      00112233445566AA\ndevaddr     0x1f\n"},
        {"frequency 1", "x, line 1: there is no setting frequency."},
        {"sf 7\n\nsf 8", "x, line 3: sf is there twice."},
        {"sf 256", "x, line 1: SF is a number from 0 to 255."},
        {"uartcfg 9600 8", "x, line 1: uartcfg takes: BAUD DATABITS none|even STOPBITS."},
        {"class d", "x, line 1: one of a, b, c is needed."},
        {"deveui 0011", "x, line 1: 8 bytes in hexadecimal."},
        {"# nothing", "There are no settings in x."},
    };
    for (const auto& row : rows) {
        file_write(path, row.text);
        const SettingsFile file = SettingsFile::read(path);
        ASSERT_EQ(file.problem, row.problem) << row.text;
        EXPECT_EQ(file.lines.isEmpty(), *row.problem != '\0');
        EXPECT_EQ(file.write(path), "");
        EXPECT_EQ(file_content(path), row.written);
    }
    file_write(path, QByteArray(SettingsFile::LARGEST + 1, '\n'));
    EXPECT_TRUE(SettingsFile::read(path).problem.contains("too large"));
    EXPECT_TRUE(SettingsFile::read(sandbox.path("none")).problem.contains("can't be read"));
    EXPECT_TRUE(SettingsFile::read(sandbox.path("")).problem.contains("is no file"));
    EXPECT_TRUE(SettingsFile().write(sandbox.path("none/x")).contains("can't be written"));
}

TEST(SettingValue, EachSettingHasARangeAHintAndALineThatItTakesBack)
{
    std::set<QString> hints;
    for (const DorvSetting& setting : dorv_settings()) {
        DorvValues values;
        for (const DorvField& field : setting.fields) {
            if (field.bytes)
                values.bytes = QByteArray(field.bytes, '\x5A');
            else
                values.numbers.append(field.words.isEmpty() ? field.most : 0);
        }
        const QString line = SettingValue::line(setting, values);
        const DorvValues taken = SettingValue::parse(setting, line);
        EXPECT_EQ(taken.numbers, values.numbers) << qPrintable(line);
        EXPECT_EQ(taken.bytes, values.bytes) << qPrintable(line);
        EXPECT_FALSE(SettingValue::range(setting).isEmpty());
        hints.insert(SettingHints::hint(setting));
    }
    EXPECT_EQ(int(hints.size()), dorv_settings().size());
    EXPECT_EQ(SettingValue::range(*find_dorv_setting("irq")), "rise | wdo, VALUE 0 to 65535");
    EXPECT_EQ(SettingHints::unit(*find_dorv_setting("freq")), "Hz");
}

TEST(SettingsVerdict, SaysHowARunHasEndedAndWhatToDo)
{
    using E = SettingsEnding;
    using K = SettingTask::Kind;
    const struct
    {
        SettingsReport report;
        const char* text;
    } rows[] = {
        {{E::Done, READ, 10, 10, 0}, "Settings read: 10 of 10."},
        {{E::Done, WRITE, 3, 2, 1}, "Settings written: 2 of 3. The column State"},
        {{E::Done, K::CommandMode, 1, 1, 0}, "The module takes commands."},
        {{E::Done, K::CommandMode, 1, 0, 1}, "The module refuses"},
        {{E::Aborted, READ, 10, 4, 0}, "Stopped. Settings read: 4 of 10."},
        {{E::Echo, READ, 10, 0, 0}, "The module repeats"},
        {{E::Silent, READ, 10, 0, 0, "class"}, "The module doesn't answer for class: begin"},
        {{E::Silent, K::CommandMode, 1, 0, 0}, "The module doesn't answer: check"},
        {{E::Silent, READ, 10, 0, 0, "class", {LinkTrouble::PortGone, "/dev/x"}},
         "The port /dev/x has gone"},
    };
    for (const auto& row : rows) {
        const SettingsVerdict verdict = settings_verdict(row.report);
        EXPECT_TRUE(verdict.text.startsWith(row.text)) << qPrintable(verdict.text);
        EXPECT_EQ(verdict.good, row.report.ending == E::Done && row.report.bad == 0);
    }
}

TEST(ShellWord, AShellTakesItAsItIs)
{
    const std::pair<const char*, bool> rows[] = {
        {"serial:/dev/ttyUSB0,115200,8N1", true},
        {"crc16+chan:05", true},
        {"", false},
        {"serial:/dev/my port", false},
        {"it's \"$HOME\"", false},
        {"a;b|c&d*~`e`\\", false},
        {"tcp:[::1]:4001", false},
        {"端口", false},
    };
    for (const auto& [text, bare] : rows) {
        const QString word = shell_word(text);
        EXPECT_EQ(word == text, bare) << text;
        QProcess shell;
        shell.start("sh", {"-c", "printf '%s|' " + word});
        ASSERT_TRUE(shell.waitForFinished(PATIENCE_MS));
        EXPECT_EQ(shell.readAll(), QByteArray(text) + '|');
    }
}
