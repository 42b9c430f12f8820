#include "workbench/devicetable.h"

#include "stack/typedtext.h"

#include <algorithm>

int DeviceTable::row_at(int channel, int rate) const
{
    const auto at = std::find_if(rows.cbegin(), rows.cend(), [&](const Row& row) {
        return row.device.channel == channel && row.device.rate == rate;
    });
    return at == rows.cend() ? -1 : int(at - rows.cbegin());
}

void DeviceTable::clear()
{
    beginResetModel();
    rows.clear();
    endResetModel();
}

bool DeviceTable::add(const FoundDevice& device)
{
    const auto known = std::find_if(rows.begin(), rows.end(),
                                    [&](const Row& row) { return row.device == device; });
    if (known != rows.end()) {
        ++known->times;
        const QModelIndex changed = index(int(known - rows.begin()), TIMES);
        emit dataChanged(changed, changed);
        return false;
    }
    beginInsertRows({}, count(), count());
    rows.append({device});
    endInsertRows();
    return true;
}

void DeviceTable::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, COLUMNS - 1);
}

int DeviceTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

int DeviceTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(COLUMNS);
}

QVariant DeviceTable::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    const Row& row = rows[index.row()];
    const bool cnet = row.device.report.isEmpty();
    switch (index.column()) {
    case CHANNEL:
        return cnet ? QVariant(row.device.channel) : QVariant();
    case RATE:
        return cnet ? QVariant(baud_text(row.device.rate)) : QVariant();
    case ANSWER:
        return cnet ? shown(row.device.answer) : row.device.report;
    default:
        return row.times;
    }
}

QVariant DeviceTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QString titles[COLUMNS] = {tr("Channel"), tr("Rate"), tr("What it said"), tr("Times")};
    return titles[section];
}
