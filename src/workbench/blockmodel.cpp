#include "workbench/blockmodel.h"

#include "stack/typedtext.h"
#include "tools/cnetframe.h"

#include <QFont>
#include <QFontDatabase>

namespace {
constexpr int WORD = CNET_BLOCK_SIZE / CNET_BLOCK_WORDS; // bytes

// What is wrong with the text of a word; empty when nothing is.
QString fault_in(const QString& text, QByteArray& bytes)
{
    try {
        bytes = parse_hex_bytes(text);
    } catch (const TextError& error) {
        return error.message;
    }
    return bytes.size() == WORD ? QString() : BlockModel::tr("a word has 8 hexadecimal digits");
}
} // namespace

void BlockModel::held_set(const QByteArray& block)
{
    beginResetModel();
    QByteArray merged = block;
    for (int word = 0; word < rowCount(); ++word) {
        if (changed(word))
            merged.replace(word * WORD, WORD, edited.mid(word * WORD, WORD));
    }
    held = block;
    edited = merged;
    endResetModel();
    emit edited_changed();
}

void BlockModel::changes_drop()
{
    beginResetModel();
    edited = held;
    faulty.clear();
    endResetModel();
    emit edited_changed();
}

void BlockModel::clear()
{
    held.clear();
    changes_drop();
}

bool BlockModel::changed(int word) const
{
    return faulty.contains(word) || edited.mid(word * WORD, WORD) != held.mid(word * WORD, WORD);
}

int BlockModel::changed_words() const
{
    int count = 0;
    for (int word = 0; word < rowCount(); ++word)
        count += changed(word) ? 1 : 0;
    return count;
}

QString BlockModel::problem() const
{
    if (faulty.isEmpty())
        return {};
    QByteArray bytes;
    return tr("Word %1: %2.").arg(faulty.firstKey()).arg(fault_in(faulty.first(), bytes));
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
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return look(index, role);
    const bool to_write = index.column() == VALUE;
    if (to_write && faulty.contains(index.row()))
        return faulty[index.row()];
    return shown((to_write ? edited : held).mid(index.row() * WORD, WORD));
}

// Changed words are bold, faulty ones crossed out too.
QVariant BlockModel::look(const QModelIndex& index, int role) const
{
    if (role != Qt::FontRole)
        return {};
    const bool to_write = index.column() == VALUE;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setBold(to_write && changed(index.row()));
    font.setStrikeOut(to_write && faulty.contains(index.row()));
    return font;
}

bool BlockModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    QByteArray bytes;
    faulty.remove(index.row());
    if (fault_in(value.toString(), bytes).isEmpty())
        edited.replace(index.row() * WORD, WORD, bytes);
    else
        faulty[index.row()] = value.toString();
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
