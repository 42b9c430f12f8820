// The words of a configuration block as a table to be edited: what the device holds, and what it is
// to hold.
#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QMap>

class BlockModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { VALUE, HELD, COLUMNS };

    using QAbstractTableModel::QAbstractTableModel;

    // As read from the device. Words that were changed here stay as they are.
    void held_set(const QByteArray& block);
    // Back to what the device holds. Not revert(), which Qt calls when the typing of one word is
    // given up.
    void changes_drop();
    void clear();

    bool is_empty() const { return held.isEmpty(); }
    // To be written; good only without a problem.
    const QByteArray& block() const { return edited; }
    // The first word that is no word, in a sentence; empty for none.
    QString problem() const;
    int changed_words() const;
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // A word has 8 hexadecimal digits. Any other text stays in its cell too, as a problem.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void edited_changed();

private:
    bool changed(int word) const;
    QVariant look(const QModelIndex& index, int role) const;

    QByteArray held;
    QByteArray edited;
    QMap<int, QString> faulty; // texts of words that are none
};
