#include "workbench/exchangetable.h"

#include "stack/typedtext.h"

#include <QDateTime>

namespace {
constexpr int SHOWN = 64; // bytes; a cell shows no more

QString cell_text(const QByteArray& bytes)
{
    return shown_both(bytes.left(SHOWN)) + (bytes.size() > SHOWN ? " ..." : "");
}
} // namespace

void ExchangeTable::append(const ExchangeRecord& record)
{
    if (records.size() == MOST_ROWS) {
        beginRemoveRows({}, 0, 0);
        records.removeFirst();
        ++dropped;
        endRemoveRows();
    }
    beginInsertRows({}, int(records.size()), int(records.size()));
    records.append(record);
    endInsertRows();
}

void ExchangeTable::clear()
{
    beginResetModel();
    records.clear();
    dropped = 0;
    endResetModel();
}

void ExchangeTable::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, COLUMNS - 1);
}

int ExchangeTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(records.size());
}

int ExchangeTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(COLUMNS);
}

QString ExchangeTable::reply_text(const ExchangeRecord& record) const
{
    switch (record.ending) {
    case ExchangeEnding::Answered:
        return cell_text(record.reply);
    case ExchangeEnding::NotSent:
        return tr("not sent");
    case ExchangeEnding::NoAnswer:
        return tr("nothing in time");
    case ExchangeEnding::BadAnswer:
        return tr("no frame");
    case ExchangeEnding::Lost:
        return tr("link lost");
    case ExchangeEnding::Stopped:
        return tr("stopped");
    }
    return {};
}

QVariant ExchangeTable::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const ExchangeRecord& record = records[index.row()];
    if (role == Qt::ToolTipRole)
        return record.sentence();
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case TIME:
        return QDateTime::fromMSecsSinceEpoch(record.time_ms).toString("HH:mm:ss.zzz");
    case REQUEST:
        return cell_text(record.request.payload);
    case REPLY:
        return reply_text(record);
    default:
        return record.wait_text();
    }
}

QVariant ExchangeTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return dropped + section + 1;
    const QString titles[COLUMNS] = {tr("Time"), tr("Request"), tr("Reply"), tr("After")};
    return titles[section];
}
