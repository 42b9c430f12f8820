// The modules of a production line as rows of a table.
#pragma once

#include "workbench/upgrademodule.h"

#include <QAbstractTableModel>
#include <memory>
#include <vector>

class ModuleList : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { LINK, DEVICE, STAGE, PROGRESS, RESULT, COLUMNS };

    // The first row is the module on the shared link, which is never removed.
    ModuleList(LinkWorker& shared, LogFeed& feed, LinkRecorder& recorder, QObject* parent);

    UpgradeModule& module(int row) const { return *modules[std::size_t(row)]; }
    int count() const { return int(modules.size()); }
    void add(const StackDescription& description);
    // Not the first one, and none that is running.
    bool remove(int row);

    // Starts all that are ready; gives how many.
    int start(const FirmwareFile& file, const UpgradeSettings& settings);
    void abort();
    int running() const;
    void retranslate();

    // A line a module that has ended, with a head line; RFC 4180.
    QString csv() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void module_changed(int row);
    void module_ended(int row);

private:
    void append(std::unique_ptr<UpgradeModule> module);
    int row_of(const UpgradeModule* module) const;
    QString text(const UpgradeModule& module, int column) const;
    QString hint(const UpgradeModule& module, int column) const;

    LogFeed& feed;
    LinkRecorder& recorder;
    std::vector<std::unique_ptr<UpgradeModule>> modules;
};
