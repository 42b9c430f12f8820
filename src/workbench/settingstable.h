// The settings of a Dorv module as rows of a table: what the module holds, and what it is to hold.
#pragma once

#include "workbench/settingsfile.h"
#include "workbench/settingsrun.h"

#include <QAbstractTableModel>
#include <QVector>

class SettingsTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { NAME, VALUE, HELD, STATE, TAKES, UNIT, COLUMNS };

    explicit SettingsTable(QObject* parent);

    const DorvSetting& setting(int row) const { return *rows[row].setting; }
    // What the module isn't known to hold, though it shall.
    bool differs(int row) const;
    // The rows that differ.
    QVector<int> differing() const;
    // What is wrong with the value; empty when it can be written.
    QString problem(int row) const;

    // Of these rows, those that can be read.
    QVector<SettingTask> reads(const QVector<int>& chosen) const;
    // All of these rows, whose values have no problem.
    QVector<SettingTask> writes(const QVector<int>& chosen) const;
    // What a run shows before its results come; with none at the end.
    void waiting_set(const QVector<SettingTask>& tasks);
    void result_take(const SettingResult& result);
    // Another module may be at the link now. Values stay to be looked at, and to be written.
    void module_forget();

    // How many values that shall be written would give way to others.
    int replaced_by(const SettingsFile& file) const;
    // Values that the module shall hold; all others stay as they are.
    void file_take(const SettingsFile& file);
    // All values that are known or wanted, and whole.
    SettingsFile file() const;
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    enum class Last { Nothing, Waiting, Read, Written, Refused, ReadsBack, Silent, Echoed };
    struct Row
    {
        const DorvSetting* setting;
        QString held;   // as far as it is known
        QString seen;   // what the module before held
        QString wanted; // when it isn't what is held; as typed where that is no value
        Last last = Last::Nothing;
        QString reply = {}; // of Refused
    };

    int row_of(const DorvSetting* setting) const;
    const QString& shown(const Row& row) const
    {
        return !row.wanted.isEmpty() ? row.wanted : !row.held.isEmpty() ? row.held : row.seen;
    }
    void want(Row& row, const QString& text);
    QString text(int row, int column) const;
    QString state_text(int row) const;
    void row_changed(int row);

    QVector<Row> rows;
};
