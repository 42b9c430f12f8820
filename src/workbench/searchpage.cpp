#include "workbench/searchpage.h"

#include "workbench/blockbox.h"
#include "workbench/cnetwords.h"
#include "workbench/connectionbar.h"
#include "workbench/heatmapview.h"
#include "workbench/icons.h"
#include "workbench/searchbox.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

SearchPage::SearchPage(ConnectionBar& connection, QWidget* parent)
    : QWidget(parent)
    , connection(connection)
    , settings(new SearchBox)
    , notice(new Notice)
{
    setObjectName("search");
    notice->setObjectName("search_notice");
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(settings);
    layout->addWidget(map_create());
    layout->addWidget(found_create(), 1);
    layout->addWidget(run_row_create());
    layout->addWidget(notice);
    connect_run();
    connect_choices();
    retranslate();
    page_set();
}

QPushButton* SearchPage::button_create(const char* name, void (SearchPage::*slot)())
{
    auto* const button = new QPushButton;
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget* SearchPage::map_create()
{
    view = new HeatMapView;
    view->setObjectName("heat_map");
    legend = new HeatLegend;
    cell_label = new QLabel;
    cell_label->setObjectName("heat_text");
    connect(view, &HeatMapView::described, cell_label, &QLabel::setText);

    map_part = new QWidget;
    auto* const column = new QVBoxLayout(map_part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view);
    auto* const row = new QHBoxLayout;
    row->addWidget(legend);
    row->addWidget(cell_label, 1);
    column->addLayout(row);
    return map_part;
}

QWidget* SearchPage::found_create()
{
    table = new QTableView;
    table->setObjectName("devices");
    table->setModel(&list);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false); // Tab leaves the table
    table->setWordWrap(false);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setSectionResizeMode(DeviceTable::ANSWER, QHeaderView::Stretch);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    block = new BlockBox(connection);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(table, 1);
    row->addWidget(block, 1);
    return widget;
}

QWidget* SearchPage::run_row_create()
{
    bar = new QProgressBar;
    bar->setObjectName("search_progress");
    bar->setValue(0);
    start_button = button_create("search_start", &SearchPage::start);
    stop_button = button_create("search_stop", &SearchPage::abort);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(bar, 1);
    row->addWidget(start_button);
    row->addWidget(stop_button);
    return widget;
}

void SearchPage::connect_run()
{
    connect(&run, &SearchRun::begun, this, [this](int total) {
        bar->setRange(0, total);
        bar->setValue(0);
        notice->clear();
    });
    connect(&run, &SearchRun::advanced, bar, &QProgressBar::setValue);
    connect(&run, &SearchRun::pair_begun, this, [this](int channel, int rate) {
        heat.enter(channel, rate);
        view->map_set(heat);
    });
    connect(&run, &SearchRun::device_found, this, &SearchPage::device_add);
    connect(&run, &SearchRun::ended, this, &SearchPage::run_end);
    connect(block, &BlockBox::said, notice, &Notice::say);
    connect(block, &BlockBox::begun, this, &SearchPage::page_set);
    connect(block, &BlockBox::ended, this, [this] {
        page_set();
        if (!busy())
            emit idle();
    });
    connect(&connection.link(), &LinkWorker::state_changed, this, [this] {
        if (connection.link().state() == LinkWorker::State::Closing)
            abort();
    });
}

void SearchPage::connect_choices()
{
    connect(settings, &SearchBox::changed, this, [this] {
        notice->clear();
        page_set();
    });
    connect(table, &QTableView::clicked, this, &SearchPage::device_choose);
    connect(table, &QTableView::activated, this, &SearchPage::device_choose);
    connect(view, &HeatMapView::chosen, this, [this](int channel, int rate) {
        const int row = list.row_at(channel, rate);
        if (row >= 0)
            table->selectRow(row);
    });
}

bool SearchPage::busy() const
{
    return run.running() || block->running();
}

bool SearchPage::unwritten() const
{
    return block->unwritten();
}

void SearchPage::abort()
{
    if (!busy())
        return;
    run.abort();
    block->abort();
    notice->say(Notice::Kind::Hint, tr("Stopping after the exchange under way ..."));
    keys_keep();
    stop_button->setEnabled(false);
}

void SearchPage::start()
{
    CnetSearchSettings search;
    if (settings->for_cnet()) {
        QString problem;
        const auto typed = settings->settings(problem);
        if (!typed)
            return notice->say(Notice::Kind::Problem, problem);
        search = *typed;
    }
    const QString hindrance = connection.hindrance();
    if (!hindrance.isEmpty())
        return notice->say(Notice::Kind::Problem, hindrance);
    list.clear();
    heat = HeatMap(search.channels, search.rates);
    view->map_set(heat);
    if (settings->for_cnet())
        run.cnet_start(connection.link(), search);
    else
        run.dorv_start(connection.link(), settings->duration_ms());
    page_set();
    stop_button->setFocus();
}

void SearchPage::device_add(const FoundDevice& device)
{
    if (!list.add(device) || !device.report.isEmpty())
        return;
    heat.found_add(device.channel, device.rate);
    view->map_set(heat);
}

// The answer's layout is the device's; most begin with their address.
void SearchPage::device_choose(const QModelIndex& index)
{
    if (!index.isValid() || !settings->for_cnet() || block->running())
        return;
    const FoundDevice& device = list.device(index.row());
    const bool is_long = device.answer.size() == int(sizeof(cnet_search_response_ext));
    const int size = is_long ? CNET_LONG_ADDRESS : CNET_SHORT_ADDRESS;
    block->place_set({device.answer.left(size), device.channel, device.rate});
    if (!run.running())
        block->read();
}

void SearchPage::run_end(const SearchReport& report)
{
    heat.end(report.outcome == CnetOutcome::Done);
    view->map_set(heat);
    if (report.outcome == CnetOutcome::Done)
        bar->setValue(bar->maximum());
    const bool good = report.outcome == CnetOutcome::Done && list.count() > 0;
    const bool stopped = report.outcome == CnetOutcome::Aborted;
    notice->say(good      ? Notice::Kind::Good
                : stopped ? Notice::Kind::Hint
                          : Notice::Kind::Problem,
                CnetWords::search_end(report, heat.count_of(HeatState::Searched), list.count()));
    keys_keep();
    page_set();
    if (good && !table->selectionModel()->hasSelection())
        table->selectRow(0);
    if (!busy())
        emit idle();
}

// A disabled button would give them to the log.
void SearchPage::keys_keep()
{
    if (stop_button->hasFocus())
        table->setFocus();
}

void SearchPage::page_set()
{
    const bool cnet = settings->for_cnet();
    map_part->setVisible(cnet);
    block->setVisible(cnet);
    table->setColumnHidden(DeviceTable::CHANNEL, !cnet);
    table->setColumnHidden(DeviceTable::RATE, !cnet);
    settings->setEnabled(!run.running());
    block->link_taken_set(run.running());
    start_button->setEnabled(!busy());
    stop_button->setEnabled(run.running());
}

void SearchPage::load(const QSettings& ini)
{
    settings->load(ini);
}

void SearchPage::store(QSettings& ini) const
{
    settings->store(ini);
}

void SearchPage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void SearchPage::retranslate()
{
    table->setAccessibleName(tr("devices found"));
    table->setToolTip(tr("A click, or Enter, reads the configuration of a cnet device."));
    bar->setAccessibleName(tr("progress of the search"));
    start_button->setText(tr("&Start"));
    start_button->setIcon(theme_icon("media-playback-start", QStyle::SP_MediaPlay));
    stop_button->setText(tr("S&top"));
    stop_button->setIcon(theme_icon("process-stop", QStyle::SP_BrowserStop));
    list.retranslate();
}
