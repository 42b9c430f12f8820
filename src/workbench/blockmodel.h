// The words of a configuration block as a table to be edited: what the device holds, and what it is
// to hold.
#pragma once

#include <QAbstractTableModel>
#include <QByteArray>

class BlockModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { VALUE, HELD, COLUMNS };

    using QAbstractTableModel::QAbstractTableModel;

    // As read from the device; empty for none.
    void block_set(const QByteArray& block);
    const QByteArray& block() const { return edited; }
    int changed_words() const;
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // Takes 8 hexadecimal digits, and emits refused() for anything else.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void edited_changed();
    void refused(const QString& sentence);

private:
    bool changed(int word) const;

    QByteArray held;
    QByteArray edited;
};
