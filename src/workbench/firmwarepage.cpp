#include "workbench/firmwarepage.h"

#include "workbench/connectionbar.h"
#include "workbench/devicebox.h"
#include "workbench/icons.h"
#include "workbench/notice.h"
#include "workbench/pagemapview.h"
#include "workbench/runsettingsbox.h"
#include "workbench/settingkeys.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSaveFile>
#include <QTableView>
#include <QVBoxLayout>

FirmwarePage::FirmwarePage(ConnectionBar& connection, LogFeed& feed, QWidget* parent)
    : QWidget(parent)
    , connection(connection)
    , list(connection.link(), feed, connection.link_recorder(), nullptr)
    , notice(new Notice)
{
    setObjectName("firmware");
    notice->setObjectName("firmware_notice");
    setAcceptDrops(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(file_row_create());
    layout->addWidget(modules_create());
    layout->addWidget(details_create(), 1);
    layout->addWidget(run_row_create());
    layout->addWidget(notice);
    connect_list();
    retranslate();
    module_show();
}

void FirmwarePage::connect_list()
{
    connect(&list, &ModuleList::module_changed, this, [this](int row) {
        if (row == current_row())
            module_show();
    });
    connect(&list, &ModuleList::module_ended, this, &FirmwarePage::module_end);
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        module_show();
        result_show();
    });
    connect(&connection.link(), &LinkWorker::state_changed, this, [this] {
        list.retranslate();
        buttons_set();
        if (connection.link().state() == LinkWorker::State::Closing)
            list.module(0).abort();
    });
    connect(&connection, &ConnectionBar::description_changed, this, [this] {
        if (const auto stack = connection.description())
            list.module(0).description_set(*stack);
    });
    if (const auto stack = connection.description())
        list.module(0).description_set(*stack);
}

QPushButton* FirmwarePage::button_create(const char* name, void (FirmwarePage::*slot)())
{
    auto* const button = new QPushButton;
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget* FirmwarePage::file_row_create()
{
    file_label = new QLabel;
    file_edit = new QLineEdit;
    file_edit->setObjectName("firmware_file");
    file_edit->setClearButtonEnabled(true);
    file_edit->setAcceptDrops(false); // a file is the page's; here its address would become text
    file_label->setBuddy(file_edit);
    connect(file_edit, &QLineEdit::textChanged, this, &FirmwarePage::file_check);
    file_button = button_create("firmware_choose", &FirmwarePage::file_choose);
    file_size = new QLabel;
    file_size->setObjectName("firmware_size");

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(file_label);
    row->addWidget(file_edit, 1);
    row->addWidget(file_button);
    row->addWidget(file_size);
    return widget;
}

QWidget* FirmwarePage::modules_create()
{
    table = new QTableView;
    table->setObjectName("modules");
    table->setModel(&list);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false); // Tab leaves the table
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->setColumnWidth(ModuleList::LINK, 170);
    table->setColumnWidth(ModuleList::DEVICE, 190);
    table->setWordWrap(false);
    table->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents); // the rest is the map's
    table->setMinimumHeight(4 * table->fontMetrics().height());
    table->setMaximumHeight(12 * table->fontMetrics().height());
    table->selectRow(0);
    add_button = button_create("module_add", &FirmwarePage::module_ask);
    remove_button = button_create("module_remove", &FirmwarePage::module_remove);
    save_button = button_create("results_save", &FirmwarePage::results_save);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(table, 1);
    auto* const column = new QVBoxLayout;
    column->addWidget(add_button);
    column->addWidget(remove_button);
    column->addWidget(save_button);
    column->addStretch();
    row->addLayout(column);
    return widget;
}

QWidget* FirmwarePage::details_create()
{
    device = new DeviceBox;
    map = new PageMapView;
    map->setObjectName("page_map");
    legend = new PageLegend;
    page_label = new QLabel;
    page_label->setObjectName("page_text");
    page_label->setWordWrap(true);
    connect(map, &PageMapView::described, page_label, &QLabel::setText);
    settings = new RunSettingsBox;

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(device);
    auto* const column = new QVBoxLayout;
    column->addWidget(map, 1);
    column->addWidget(legend);
    column->addWidget(page_label);
    row->addLayout(column, 1);
    row->addWidget(settings);
    return widget;
}

QWidget* FirmwarePage::run_row_create()
{
    bar = new QProgressBar;
    bar->setObjectName("progress");
    bar->setRange(0, 100);
    transfer = new QLabel;
    transfer->setObjectName("transfer");
    start_button = button_create("start", &FirmwarePage::start);
    stop_button = button_create("stop", &FirmwarePage::stop);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(bar, 1);
    row->addWidget(transfer);
    row->addWidget(start_button);
    row->addWidget(stop_button);
    return widget;
}

void FirmwarePage::file_set(const QString& path)
{
    file_edit->setText(path);
}

void FirmwarePage::file_choose()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Firmware file"), file.path());
    if (!path.isEmpty())
        file_set(path);
}

void FirmwarePage::file_check()
{
    file = FirmwareFile(file_edit->text());
    const bool named = !file_edit->text().isEmpty();
    file_size->setText(file.usable() ? tr("%1 bytes").arg(file.size()) : QString());
    if (named && !file.usable())
        notice->say(Notice::Kind::Problem, file.problem());
    else
        notice->clear();
}

void FirmwarePage::start()
{
    file = FirmwareFile(file_edit->text()); // it may have changed since it was chosen
    if (!file.usable())
        return notice->say(Notice::Kind::Problem, file.problem());
    if (list.module(0).ready() && connection.link().busy())
        return notice->say(Notice::Kind::Problem, connection.hindrance());
    if (list.start(file, settings->settings()) == 0)
        return notice->say(Notice::Kind::Problem,
                           tr("There is no link to a module: connect first, or add a link."));
    notice->clear();
    buttons_set();
    stop_button->setFocus();
}

void FirmwarePage::stop()
{
    list.abort();
    notice->say(Notice::Kind::Hint, tr("Stopping after the exchange under way ..."));
    if (stop_button->hasFocus())
        table->setFocus();
    stop_button->setEnabled(false);
}

// On the same frame as the connection above, as a production line has modules of one kind.
void FirmwarePage::module_ask()
{
    const auto choice = connection.link_ask();
    if (!choice)
        return;
    StackDescription stack = list.module(0).description();
    stack.link = choice->link;
    stack.timeout_ms = choice->timeout_ms;
    module_add(stack);
}

void FirmwarePage::module_add(const StackDescription& stack)
{
    list.add(stack);
    table->selectRow(list.count() - 1);
    buttons_set();
}

void FirmwarePage::module_remove()
{
    list.remove(current_row());
    module_show();
}

void FirmwarePage::results_save()
{
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Save results"), "upgrade.csv", tr("Tables (*.csv)"));
    if (path.isEmpty())
        return;
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly) && out.write(list.csv().toUtf8()) >= 0 && out.commit())
        notice->say(Notice::Kind::Good, tr("The results are in %1.").arg(path));
    else
        notice->say(Notice::Kind::Problem,
                    tr("The file %1 can't be written (%2): choose another place.")
                        .arg(path, out.errorString()));
}

void FirmwarePage::module_show()
{
    const UpgradeModule& module = list.module(current_row());
    device->device_set(module.device());
    map->map_set(module.pages());
    bar->setValue(module.transfer().percent());
    bar->setAccessibleDescription(module.stage_text());
    transfer->setText(module.transfer().text());
    buttons_set();
}

// The whole sentence, of which the table shows the beginning.
void FirmwarePage::result_show()
{
    const UpgradeModule& module = list.module(current_row());
    if (!busy() && module.stage() == UpgradeModule::Stage::Ended)
        notice->say(module.good() ? Notice::Kind::Good : Notice::Kind::Problem, module.end_text());
}

void FirmwarePage::module_end()
{
    if (list.count() == 1) {
        result_show();
    } else if (list.running() == 0) {
        int good = 0;
        int ended = 0;
        for (int other = 0; other < list.count(); ++other) {
            good += list.module(other).good();
            ended += list.module(other).stage() == UpgradeModule::Stage::Ended;
        }
        notice->say(good == ended ? Notice::Kind::Good : Notice::Kind::Problem,
                    tr("%1 of %2 modules hold the file; the table says what became of each.")
                        .arg(good)
                        .arg(ended));
    }
    buttons_set();
    if (list.running() == 0)
        emit idle();
}

void FirmwarePage::buttons_set()
{
    const bool running = busy();
    const int row = current_row();
    start_button->setEnabled(!running);
    if (!running && stop_button->hasFocus())
        start_button->setFocus(); // a disabled button gives the keys to the log
    stop_button->setEnabled(running);
    settings->setEnabled(!running);
    file_edit->setEnabled(!running);
    file_button->setEnabled(!running);
    add_button->setEnabled(!running);
    remove_button->setEnabled(!running && row > 0);
    bool ended = false;
    for (int other = 0; other < list.count(); ++other)
        ended = ended || list.module(other).stage() == UpgradeModule::Stage::Ended;
    save_button->setEnabled(ended);
}

int FirmwarePage::current_row() const
{
    const int row = table->currentIndex().row();
    return row < 0 || row >= list.count() ? 0 : row;
}

void FirmwarePage::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!busy() && urls.size() == 1 && urls[0].isLocalFile())
        event->acceptProposedAction();
}

void FirmwarePage::dropEvent(QDropEvent* event)
{
    file_set(event->mimeData()->urls().value(0).toLocalFile());
    event->acceptProposedAction();
}

void FirmwarePage::load(const QSettings& ini)
{
    file_set(FIRMWARE.read(ini));
    settings->load(ini);
}

void FirmwarePage::store(QSettings& ini) const
{
    FIRMWARE.write_if_changed(ini, file_edit->text());
    settings->store(ini);
}

void FirmwarePage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void FirmwarePage::retranslate()
{
    file_label->setText(tr("U&pgrade file:"));
    file_edit->setPlaceholderText(tr("Drop a file here, or choose one"));
    file_button->setText(tr("&Browse..."));
    file_button->setIcon(theme_icon("document-open", QStyle::SP_DirOpenIcon));
    add_button->setText(tr("&Add link..."));
    add_button->setIcon(theme_icon("list-add", QStyle::SP_FileDialogNewFolder));
    remove_button->setText(tr("Remo&ve"));
    remove_button->setIcon(theme_icon("list-remove", QStyle::SP_TrashIcon));
    save_button->setText(tr("Save results..."));
    save_button->setIcon(theme_icon("document-save-as", QStyle::SP_DialogSaveButton));
    start_button->setText(tr("&Start"));
    start_button->setIcon(theme_icon("media-playback-start", QStyle::SP_MediaPlay));
    stop_button->setText(tr("S&top"));
    stop_button->setIcon(theme_icon("process-stop", QStyle::SP_BrowserStop));
    table->setAccessibleName(tr("modules and their results"));
    bar->setAccessibleName(tr("progress of the module chosen"));
    list.retranslate();
    file_check();
    module_show();
    if (file.usable())
        result_show();
}
