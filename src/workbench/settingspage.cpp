#include "workbench/settingspage.h"

#include "workbench/connectionbar.h"
#include "workbench/icons.h"
#include "workbench/notice.h"
#include "workbench/rowview.h"
#include "workbench/settingsverdict.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>

namespace {
const char FILE_FILTER[] = "*.txt";

bool is_dorv(const FramerDescription& framer)
{
    return framer.kind == FramerKind::Dorv;
}
} // namespace

SettingsPage::SettingsPage(ConnectionBar& connection, QWidget* parent)
    : QWidget(parent)
    , connection(connection)
    , table(nullptr)
    , notice(new Notice)
{
    setObjectName("settings");
    notice->setObjectName("settings_notice");
    auto* const layout = new QVBoxLayout(this);
    auto* const row = new QHBoxLayout;
    row->addWidget(table_create(), 1);
    row->addLayout(buttons_create());
    layout->addLayout(row, 1);
    layout->addWidget(run_row_create());
    layout->addWidget(notice);
    connect_all();
    retranslate();
}

QWidget* SettingsPage::table_create()
{
    view = new RowView(SettingsTable::VALUE);
    view->setObjectName("settings_table");
    view->setModel(&table);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
    view->setTabKeyNavigation(false); // Tab leaves the table
    view->setWordWrap(false);
    view->setAlternatingRowColors(true);
    view->horizontalHeader()->setSectionResizeMode(SettingsTable::TAKES, QHeaderView::Stretch);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    const int letter = view->fontMetrics().averageCharWidth();
    constexpr int LETTERS[SettingsTable::COLUMNS] = {13, 25, 25, 36, 0, 6};
    for (int column = 0; column < SettingsTable::COLUMNS; ++column)
        view->setColumnWidth(column, letter * LETTERS[column]);
    hint = new QLabel;
    hint->setObjectName("setting_hint");
    hint->setWordWrap(true);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SettingsPage::hint_show);
    view->setCurrentIndex(table.index(0, SettingsTable::VALUE));

    auto* const widget = new QWidget;
    auto* const column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view, 1);
    column->addWidget(hint);
    return widget;
}

QPushButton* SettingsPage::button_create(const char* name, void (SettingsPage::*slot)())
{
    auto* const button = new QPushButton;
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QLayout* SettingsPage::buttons_create()
{
    read_all_button = button_create("settings_read_all", &SettingsPage::all_read);
    read_button = button_create("settings_read", &SettingsPage::selection_read);
    compare_button = button_create("settings_compare", &SettingsPage::file_compare);
    save_button = button_create("settings_save", &SettingsPage::file_save);
    write_all_button = button_create("settings_write_differing", &SettingsPage::differing_write);
    write_button = button_create("settings_write", &SettingsPage::selection_write);
    mode_button = button_create("command_mode", &SettingsPage::command_mode_begin);
    auto* const column = new QVBoxLayout;
    for (QPushButton* const button : {mode_button, read_all_button, read_button, compare_button,
                                      save_button, write_all_button, write_button})
        column->addWidget(button);
    column->addStretch();
    return column;
}

QWidget* SettingsPage::run_row_create()
{
    bar = new QProgressBar;
    bar->setObjectName("settings_progress");
    stop_button = button_create("settings_stop", &SettingsPage::stop);
    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(bar, 1);
    row->addWidget(stop_button);
    return widget;
}

void SettingsPage::connect_all()
{
    connect(&run, &SettingsRun::result, this, [this](const SettingResult& result) {
        table.result_take(result);
        bar->setValue(bar->value() + 1);
    });
    connect(&run, &SettingsRun::ended, this, &SettingsPage::run_end);
    connect(&table, &QAbstractItemModel::dataChanged, this, &SettingsPage::buttons_set);
    connect(&connection.link(), &LinkWorker::state_changed, this, [this] {
        if (connection.link().state() == LinkWorker::State::Opening)
            table.module_forget();
        if (connection.link().state() == LinkWorker::State::Closing && busy())
            stop();
    });
}

// Of the row that the keys are at.
void SettingsPage::hint_show()
{
    const QModelIndex at = table.index(view->currentIndex().row(), SettingsTable::NAME);
    const QString range = table.index(at.row(), SettingsTable::TAKES).data().toString();
    hint->setText(at.data(Qt::ToolTipRole).toString() + "  " + range);
    view->setAccessibleDescription(hint->text());
}

QVector<int> SettingsPage::selection() const
{
    QVector<int> rows;
    for (const QModelIndex& index : view->selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void SettingsPage::all_read()
{
    QVector<int> rows(table.rowCount());
    std::iota(rows.begin(), rows.end(), 0);
    read(rows);
}

void SettingsPage::selection_read()
{
    read(selection());
}

void SettingsPage::read(const QVector<int>& rows)
{
    const QVector<SettingTask> tasks = table.reads(rows);
    if (tasks.isEmpty())
        return notice->say(Notice::Kind::Problem,
                           tr("Nothing of the selection can be read: select other rows."));
    start(tasks);
}

void SettingsPage::differing_write()
{
    write(table.differing());
}

void SettingsPage::selection_write()
{
    write(selection());
}

void SettingsPage::write(const QVector<int>& rows)
{
    if (rows.isEmpty())
        return notice->say(Notice::Kind::Problem, tr("There is nothing to write: type a value, or "
                                                     "compare with a file."));
    for (const int row : rows) {
        const QString problem = table.problem(row);
        if (problem.isEmpty())
            continue;
        view->setCurrentIndex(table.index(row, SettingsTable::VALUE));
        view->setFocus();
        return notice->say(Notice::Kind::Problem,
                           tr("Nothing is written, as a value has a mistake. %1: %2.")
                               .arg(table.setting(row).name, problem));
    }
    start(table.writes(rows));
}

void SettingsPage::command_mode_begin()
{
    SettingTask task;
    task.kind = SettingTask::Kind::CommandMode;
    start({task});
}

void SettingsPage::start(const QVector<SettingTask>& tasks)
{
    const QString hindrance = connection.hindrance();
    if (!hindrance.isEmpty())
        return notice->say(Notice::Kind::Problem, hindrance);
    const auto stack = connection.description();
    if (stack && std::any_of(stack->framers.cbegin(), stack->framers.cend(), is_dorv))
        return notice->say(Notice::Kind::Problem,
                           tr("Settings are no payload: disconnect, and choose a frame without "
                              "dorv."));
    notice->clear();
    bar->setRange(0, int(tasks.size()));
    bar->setValue(0);
    table.waiting_set(tasks);
    run.start(connection.link(), tasks);
    buttons_set();
    stop_button->setFocus();
}

void SettingsPage::stop()
{
    run.abort();
    notice->say(Notice::Kind::Hint, tr("Stopping after the exchange under way ..."));
    if (stop_button->hasFocus())
        view->setFocus();
    stop_button->setEnabled(false);
}

void SettingsPage::run_end(const SettingsReport& report)
{
    if (stop_button->hasFocus())
        view->setFocus(); // a disabled button gives the keys to the log
    table.waiting_set({});
    const SettingsVerdict verdict = settings_verdict(report);
    notice->say(verdict.good ? Notice::Kind::Good : Notice::Kind::Problem, verdict.text);
    buttons_set();
    emit idle();
}

void SettingsPage::file_compare()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Compare with file"), {},
                                                      tr("Settings (%1)").arg(FILE_FILTER) + ";;" +
                                                          tr("All files (*)"));
    if (path.isEmpty())
        return;
    const SettingsFile file = SettingsFile::read(path);
    if (!file.problem.isEmpty())
        return notice->say(Notice::Kind::Problem, file.problem);
    const int replaced = table.replaced_by(file);
    if (replaced > 0 &&
        QMessageBox::question(
            this, tr("Values not written yet"),
            tr("Settings that are typed, not written, and different in the file: %1. Take the "
               "values of the file?")
                .arg(replaced)) != QMessageBox::Yes)
        return;
    table.file_take(file);
    notice->say(Notice::Kind::Good, tr("Settings in %1: %2. To be written: %3.")
                                        .arg(path, QString::number(file.lines.size()),
                                             QString::number(table.differing().size())));
}

void SettingsPage::file_save()
{
    const SettingsFile file = table.file();
    if (file.lines.isEmpty())
        return notice->say(Notice::Kind::Problem,
                           tr("There are no values to save: read all, or type some."));
    const QString path = QFileDialog::getSaveFileName(this, tr("Save to file"), "settings.txt",
                                                      tr("Settings (%1)").arg(FILE_FILTER));
    if (path.isEmpty())
        return;
    const QString problem = file.write(path);
    if (problem.isEmpty())
        notice->say(Notice::Kind::Good,
                    tr("Settings in %1: %2.").arg(path, QString::number(file.lines.size())));
    else
        notice->say(Notice::Kind::Problem, problem);
}

void SettingsPage::buttons_set()
{
    const bool running = busy();
    for (QPushButton* const button : {mode_button, read_all_button, read_button, compare_button,
                                      save_button, write_all_button, write_button})
        button->setEnabled(!running);
    stop_button->setEnabled(running);
}

void SettingsPage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void SettingsPage::retranslate()
{
    view->setAccessibleName(tr("settings of the module"));
    bar->setAccessibleName(tr("settings read or written"));
    mode_button->setText(tr("&Begin command mode"));
    mode_button->setToolTip(
        tr("A module that is busy with radio traffic takes commands only after this."));
    read_all_button->setText(tr("Read &all"));
    read_all_button->setIcon(theme_icon("view-refresh", QStyle::SP_BrowserReload));
    read_button->setText(tr("Read selection"));
    compare_button->setText(tr("Com&pare with file..."));
    compare_button->setIcon(theme_icon("document-open", QStyle::SP_DirOpenIcon));
    compare_button->setToolTip(tr("Fills the column Value from a file; what the module holds "
                                  "otherwise is in bold."));
    save_button->setText(tr("Sa&ve to file..."));
    save_button->setIcon(theme_icon("document-save-as", QStyle::SP_DialogSaveButton));
    write_all_button->setText(tr("Write what differ&s"));
    write_all_button->setIcon(theme_icon("go-down", QStyle::SP_ArrowDown));
    write_all_button->setToolTip(tr("Writes the values in bold, and reads them back."));
    write_button->setText(tr("Write selection"));
    stop_button->setText(tr("S&top"));
    stop_button->setIcon(theme_icon("process-stop", QStyle::SP_BrowserStop));
    table.retranslate();
    hint_show();
    buttons_set();
}
