#include "workbench/logmodel.h"

#include <QDateTime>

void LogModel::append(const QVector<LogLine>& more)
{
    const int surplus = int(lines.size() + more.size()) - MOST_LINES;
    const int dropped = qMin(surplus, int(lines.size()));
    if (dropped > 0) {
        beginRemoveRows({}, 0, dropped - 1);
        lines.remove(0, dropped);
        endRemoveRows();
    }
    const QVector<LogLine> fitting = more.mid(qMax(0, int(more.size()) - MOST_LINES));
    if (fitting.isEmpty())
        return;
    beginInsertRows({}, int(lines.size()), int(lines.size() + fitting.size()) - 1);
    lines += fitting;
    endInsertRows();
}

void LogModel::clear()
{
    beginResetModel();
    lines.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(lines.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if ((role != Qt::DisplayRole && role != WHOLE) || !index.isValid())
        return {};
    const LogLine& line = lines[index.row()];
    const QString time =
        QDateTime::fromMSecsSinceEpoch(line.time_ms).toString(QStringLiteral("HH:mm:ss.zzz"));
    const QString text = line.source.isEmpty() ? time + "  " + line.text
                                               : time + "  " + line.source + "  " + line.text;
    return role == WHOLE || text.size() <= MOST_SHOWN ? text : text.left(MOST_SHOWN) + " ...";
}
