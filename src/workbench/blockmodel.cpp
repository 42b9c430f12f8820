#include "workbench/blockmodel.h"

#include "stack/typedtext.h"
#include "tools/cnetframe.h"

#include <QFont>
#include <QFontDatabase>

namespace {
constexpr int WORD = CNET_BLOCK_SIZE / CNET_BLOCK_WORDS; // bytes
}

void BlockModel::block_set(const QByteArray& block)
{
    beginResetModel();
    held = block;
    edited = block;
    endResetModel();
    emit edited_changed();
}

bool BlockModel::changed(int word) const
{
    return edited.mid(word * WORD, WORD) != held.mid(word * WORD, WORD);
}

int BlockModel::changed_words() const
{
    int count = 0;
    for (int word = 0; word < rowCount(); ++word)
        count += changed(word) ? 1 : 0;
    return count;
}

void BlockModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, COLUMNS - 1);
    emit headerDataChanged(Qt::Vertical, 0, CNET_BLOCK_WORDS - 1);
}

int BlockModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(edited.size()) / WORD;
}

int BlockModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(COLUMNS);
}

Qt::ItemFlags BlockModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == VALUE ? flags | Qt::ItemIsEditable : flags;
}

QVariant BlockModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const QByteArray& bytes = index.column() == VALUE ? edited : held;
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return shown(bytes.mid(index.row() * WORD, WORD));
    if (role == Qt::FontRole) {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setBold(index.column() == VALUE && changed(index.row()));
        return font;
    }
    return {};
}

bool BlockModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    QString problem;
    QByteArray bytes;
    try {
        bytes = parse_hex_bytes(value.toString());
    } catch (const TextError& error) {
        problem = error.message;
    }
    if (bytes.size() != WORD) {
        if (problem.isEmpty())
            problem = tr("a word has 8 hexadecimal digits");
        emit refused(tr("Word %1 stays as it was: %2.").arg(index.row()).arg(problem));
        return false;
    }
    edited.replace(index.row() * WORD, WORD, bytes);
    emit dataChanged(index, index);
    emit edited_changed();
    return true;
}

QVariant BlockModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return tr("word %1").arg(section);
    return section == VALUE ? tr("To write") : tr("In the device");
}
