// The lines of the log as rows, the oldest dropped beyond a limit.
#pragma once

#include "workbench/logfeed.h"

#include <QAbstractListModel>

class LogModel : public QAbstractListModel
{
    Q_OBJECT

public:
    static constexpr int MOST_LINES = 20000;
    static constexpr int MOST_SHOWN = 4000; // characters; painting a line of 64 KiB takes 0.2 s
    enum Role { WHOLE = Qt::UserRole }; // the whole line, of which a long one shows the beginning

    using QAbstractListModel::QAbstractListModel;

    void append(const QVector<LogLine>& more);
    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QVector<LogLine> lines;
};
