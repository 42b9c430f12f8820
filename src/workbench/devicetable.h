// The devices that a search has found, as rows of a table.
#pragma once

#include "workbench/searchrun.h"

#include <QAbstractTableModel>

class DeviceTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { CHANNEL, RATE, ANSWER, TIMES, COLUMNS };

    using QAbstractTableModel::QAbstractTableModel;

    int count() const { return int(rows.size()); }
    const FoundDevice& device(int row) const { return rows[row].device; }
    // The first one on that pair; -1 for none.
    int row_at(int channel, int rate) const;
    void clear();
    // False for one that is known, which counts once more.
    bool add(const FoundDevice& device);
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row
    {
        FoundDevice device;
        int times = 1;
    };
    QVector<Row> rows;
};
