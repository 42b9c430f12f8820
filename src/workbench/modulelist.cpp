#include "workbench/modulelist.h"

#include <algorithm>

namespace {
QString quoted(QString field)
{
    const bool plain = !field.contains(',') && !field.contains('"') && !field.contains('\n');
    return plain ? field : '"' + field.replace('"', "\"\"") + '"';
}
} // namespace

ModuleList::ModuleList(LinkWorker& shared, LogFeed& feed, LinkRecorder& recorder, QObject* parent)
    : QAbstractTableModel(parent)
    , feed(feed)
    , recorder(recorder)
{
    append(std::make_unique<UpgradeModule>(shared, nullptr));
}

void ModuleList::add(const StackDescription& description)
{
    append(std::make_unique<UpgradeModule>(description, feed, recorder, nullptr));
}

void ModuleList::append(std::unique_ptr<UpgradeModule> module)
{
    const UpgradeModule* const added = module.get();
    connect(added, &UpgradeModule::changed, this, [this, added] {
        const int row = row_of(added);
        emit dataChanged(index(row, 0), index(row, COLUMNS - 1));
        emit module_changed(row);
    });
    connect(added, &UpgradeModule::ended, this,
            [this, added] { emit module_ended(row_of(added)); });
    beginInsertRows({}, count(), count());
    modules.push_back(std::move(module));
    endInsertRows();
}

bool ModuleList::remove(int row)
{
    if (row < 1 || row >= count() || module(row).running())
        return false;
    beginRemoveRows({}, row, row);
    modules.erase(modules.begin() + row);
    endRemoveRows();
    return true;
}

int ModuleList::row_of(const UpgradeModule* module) const
{
    const auto at = std::find_if(modules.cbegin(), modules.cend(),
                                 [&](const auto& other) { return other.get() == module; });
    return int(at - modules.cbegin());
}

int ModuleList::start(const FirmwareFile& file, const UpgradeSettings& settings)
{
    int started = 0;
    for (const auto& module : modules) {
        if (module->ready() && !module->running()) {
            module->start(file, settings);
            ++started;
        }
    }
    return started;
}

void ModuleList::abort()
{
    for (const auto& module : modules)
        module->abort();
}

int ModuleList::running() const
{
    return int(std::count_if(modules.cbegin(), modules.cend(),
                             [](const auto& module) { return module->running(); }));
}

void ModuleList::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, COLUMNS - 1);
    emit dataChanged(index(0, 0), index(count() - 1, COLUMNS - 1));
}

QString ModuleList::csv() const
{
    QStringList lines = {"link,frame,file,device,result,bytes,seconds,text"};
    for (const auto& module : modules) {
        if (module->stage() != UpgradeModule::Stage::Ended)
            continue;
        const StackDescription& stack = module->description();
        const QStringList fields = {link_text(stack.link),
                                    framers_text(stack.framers),
                                    module->file_name(),
                                    module->device() ? module->device()->soft_info : QString(),
                                    module->good() ? "upgraded" : "failed",
                                    QString::number(module->transfer().done),
                                    QString::number(double(module->elapsed_ms()) / 1000, 'f', 1),
                                    module->end_text()};
        QStringList cells;
        std::transform(fields.cbegin(), fields.cend(), std::back_inserter(cells), quoted);
        lines += cells.join(',');
    }
    return lines.join("\r\n") + "\r\n";
}

int ModuleList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

int ModuleList::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(COLUMNS);
}

QString ModuleList::text(const UpgradeModule& module, int column) const
{
    switch (column) {
    case LINK:
        return module.shares_link() ? tr("the connection above")
                                    : link_name(module.description().link);
    case DEVICE:
        return module.device() ? module.device()->soft_info : QString();
    case STAGE:
        return module.stage_text();
    case PROGRESS:
        return module.transfer().total == 0
                   ? QString()
                   : QStringLiteral("%1 %").arg(module.transfer().percent());
    case RESULT:
        return module.end_text();
    default:
        return {};
    }
}

QString ModuleList::hint(const UpgradeModule& module, int column) const
{
    if (column != LINK)
        return text(module, column);
    const StackDescription& stack = module.description();
    return link_text(stack.link) + "  " + framers_text(stack.framers);
}

QVariant ModuleList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const UpgradeModule& of_row = module(index.row());
    return role == Qt::DisplayRole ? text(of_row, index.column()) : hint(of_row, index.column());
}

QVariant ModuleList::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QString titles[COLUMNS] = {tr("Link"), tr("Module"), tr("State"), tr("Progress"),
                                     tr("Result")};
    return titles[section];
}
