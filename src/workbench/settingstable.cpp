#include "workbench/settingstable.h"

#include "stack/typedtext.h"
#include "workbench/settinghints.h"
#include "workbench/settingvalue.h"

#include <QFont>
#include <algorithm>
#include <utility>

SettingsTable::SettingsTable(QObject* parent)
    : QAbstractTableModel(parent)
{
    for (const DorvSetting& setting : dorv_settings())
        rows.append({&setting, {}, {}, {}});
}

bool SettingsTable::differs(int row) const
{
    const Row& of_row = rows[row];
    return !of_row.wanted.isEmpty() && !SettingValue::begins(of_row.held, of_row.wanted);
}

QVector<int> SettingsTable::differing() const
{
    QVector<int> found;
    for (int row = 0; row < rows.size(); ++row) {
        if (differs(row))
            found.append(row);
    }
    return found;
}

QString SettingsTable::problem(int row) const
{
    try {
        SettingValue::parse(setting(row), shown(rows[row]));
        return {};
    } catch (const TextError& error) {
        return error.message;
    }
}

QVector<SettingTask> SettingsTable::reads(const QVector<int>& chosen) const
{
    QVector<SettingTask> tasks;
    for (const int row : chosen) {
        if (setting(row).get)
            tasks.append({SettingTask::Kind::Read, &setting(row)});
    }
    return tasks;
}

QVector<SettingTask> SettingsTable::writes(const QVector<int>& chosen) const
{
    QVector<SettingTask> tasks;
    for (const int row : chosen)
        tasks.append({SettingTask::Kind::Write, &setting(row),
                      SettingValue::parse(setting(row), shown(rows[row]))});
    return tasks;
}

void SettingsTable::waiting_set(const QVector<SettingTask>& tasks)
{
    for (Row& row : rows) {
        const bool waits = std::any_of(tasks.cbegin(), tasks.cend(), [&](const SettingTask& task) {
            return task.setting == row.setting;
        });
        if (waits)
            row.last = Last::Waiting;
        else if (row.last == Last::Waiting)
            row.last = Last::Nothing;
    }
    retranslate();
}

void SettingsTable::result_take(const SettingResult& result)
{
    const int at = row_of(result.setting);
    if (at < 0)
        return;
    Row& row = rows[at];
    const bool written = result.kind == SettingTask::Kind::Write;
    row.reply = QString::fromLatin1(result.reply.simplified());
    switch (result.outcome) {
    case DorvOutcome::Done: {
        const QString wanted = shown(row);
        row.last = result.differs ? Last::ReadsBack : written ? Last::Written : Last::Read;
        // What was read alone may be the beginning of what is known.
        if (!SettingValue::begins(row.held, result.held) || written)
            row.held = result.held;
        want(row, row.wanted.isEmpty() && !result.differs ? QString() : wanted);
        break;
    }
    case DorvOutcome::NoReply:
        row.last = Last::Silent;
        break;
    case DorvOutcome::Echoed:
        row.last = Last::Echoed;
        break;
    default:
        row.last = Last::Refused;
    }
    row_changed(at);
}

void SettingsTable::module_forget()
{
    for (Row& row : rows) {
        if (!row.held.isEmpty())
            row.seen = std::exchange(row.held, {});
        row.last = Last::Nothing;
    }
    retranslate();
}

int SettingsTable::replaced_by(const SettingsFile& file) const
{
    return int(std::count_if(file.lines.cbegin(), file.lines.cend(), [&](const SettingLine& line) {
        const int row = row_of(line.setting);
        return differs(row) && rows[row].wanted != line.value;
    }));
}

void SettingsTable::file_take(const SettingsFile& file)
{
    for (const SettingLine& line : file.lines) {
        Row& row = rows[row_of(line.setting)];
        row.last = Last::Nothing;
        want(row, line.value);
    }
    retranslate();
}

SettingsFile SettingsTable::file() const
{
    SettingsFile file;
    for (int row = 0; row < rows.size(); ++row) {
        if (problem(row).isEmpty())
            file.lines.append({rows[row].setting, shown(rows[row])});
    }
    return file;
}

void SettingsTable::want(Row& row, const QString& text)
{
    row.wanted = text;
    try {
        row.wanted = text.isEmpty() ? text : SettingValue::normal(*row.setting, text);
    } catch (const TextError&) {
        // Stays to be mended.
    }
    if (SettingValue::begins(row.held, row.wanted))
        row.wanted.clear();
}

int SettingsTable::row_of(const DorvSetting* setting) const
{
    for (int row = 0; row < rows.size(); ++row) {
        if (rows[row].setting == setting)
            return row;
    }
    return -1;
}

void SettingsTable::row_changed(int row)
{
    emit dataChanged(index(row, 0), index(row, COLUMNS - 1));
}

void SettingsTable::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, COLUMNS - 1);
    emit dataChanged(index(0, 0), index(int(rows.size()) - 1, COLUMNS - 1));
}

int SettingsTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows.size());
}

int SettingsTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(COLUMNS);
}

QString SettingsTable::state_text(int row) const
{
    const Row& of_row = rows[row];
    switch (of_row.last) {
    case Last::Waiting:
        return tr("waiting");
    case Last::Refused:
        return tr("refused: %1").arg(of_row.reply);
    case Last::ReadsBack:
        return tr("reads back as something else");
    case Last::Silent:
        return tr("no answer");
    case Last::Echoed:
        return tr("echoed");
    default:
        break;
    }
    if (differs(row))
        return problem(row).isEmpty() ? tr("differs") : problem(row);
    if (of_row.last == Last::Read)
        return tr("read");
    if (of_row.last == Last::Written)
        return of_row.setting->get ? tr("written, and read back") : tr("written");
    return of_row.setting->get ? QString() : tr("can only be written");
}

QString SettingsTable::text(int row, int column) const
{
    switch (column) {
    case NAME:
        return setting(row).name;
    case VALUE:
        return shown(rows[row]);
    case HELD:
        return rows[row].held;
    case TAKES:
        return SettingValue::range(setting(row));
    case UNIT:
        return SettingHints::unit(setting(row));
    case STATE:
        return state_text(row);
    default:
        return {};
    }
}

QVariant SettingsTable::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(index.row(), column);
    case Qt::ToolTipRole:
        return column == NAME ? SettingHints::hint(setting(index.row()))
                              : text(index.row(), column);
    case Qt::FontRole: {
        QFont font;
        font.setBold(true);
        return differs(index.row()) && column == VALUE ? QVariant(font) : QVariant();
    }
    default:
        return {};
    }
}

bool SettingsTable::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != VALUE || role != Qt::EditRole)
        return false;
    Row& row = rows[index.row()];
    const QString typed = value.toString().trimmed();
    // What another module held is confirmed by the same text.
    if (typed == shown(row) && !(row.wanted.isEmpty() && row.held.isEmpty()))
        return true;
    row.last = Last::Nothing;
    want(row, typed);
    row_changed(index.row());
    return true;
}

QVariant SettingsTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation == Qt::Vertical)
        return {};
    const QString titles[COLUMNS] = {tr("Setting"), tr("Value"), tr("In the module"),
                                     tr("State"),   tr("Range"), tr("Unit")};
    return titles[section];
}

Qt::ItemFlags SettingsTable::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == VALUE ? flags | Qt::ItemIsEditable : flags;
}
