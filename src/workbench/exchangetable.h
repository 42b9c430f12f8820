// The exchanges so far as rows of a table, the newest last.
#pragma once

#include "workbench/exchangerecord.h"

#include <QAbstractTableModel>

class ExchangeTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TIME, REQUEST, REPLY, WAIT, COLUMNS };
    static constexpr int MOST_ROWS = 1000; // the oldest go

    using QAbstractTableModel::QAbstractTableModel;

    const ExchangeRecord& record(int row) const { return records[row]; }
    void append(const ExchangeRecord& record);
    void clear();
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString reply_text(const ExchangeRecord& record) const;

    QVector<ExchangeRecord> records;
    int dropped = 0; // rows keep their numbers
};
