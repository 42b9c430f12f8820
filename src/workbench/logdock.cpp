#include "workbench/logdock.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace {
constexpr int PACE_MS = 40; // a batch at a time costs less than a line at a time
} // namespace

LogDock::LogDock(LogFeed& feed, QWidget* parent)
    : QDockWidget(parent)
    , feed(feed)
{
    setObjectName("log_dock");
    filtered.setSourceModel(&model);
    filtered.setFilterCaseSensitivity(Qt::CaseInsensitive);
    filtered.setFilterRole(LogModel::WHOLE);
    view = new QListView;
    view->setObjectName("log_view");
    view->setModel(&filtered);
    view->setUniformItemSizes(true);
    view->setTextElideMode(Qt::ElideNone);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* const copy_action = new QAction(view);
    copy_action->setShortcut(QKeySequence::Copy);
    copy_action->setShortcutContext(Qt::WidgetShortcut);
    connect(copy_action, &QAction::triggered, this, &LogDock::copy);
    view->addAction(copy_action);

    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(4, 2, 4, 4);
    layout->addWidget(tools_create());
    layout->addWidget(view);
    setWidget(content);

    pace.setSingleShot(true);
    pace.setInterval(PACE_MS);
    connect(&pace, &QTimer::timeout, this, &LogDock::take);
    connect(
        &feed, &LogFeed::lines_wait, this, [this] { pace.start(); }, Qt::QueuedConnection);
    retranslate();
}

QWidget* LogDock::tools_create()
{
    filter_label = new QLabel;
    filter_edit = new QLineEdit;
    filter_edit->setObjectName("log_filter");
    filter_edit->setClearButtonEnabled(true);
    filter_label->setBuddy(filter_edit);
    connect(filter_edit, &QLineEdit::textChanged, &filtered,
            &QSortFilterProxyModel::setFilterFixedString);
    find_label = new QLabel;
    find_edit = new QLineEdit;
    find_edit->setObjectName("log_find");
    find_edit->setClearButtonEnabled(true);
    find_label->setBuddy(find_edit);
    connect(find_edit, &QLineEdit::returnPressed, this, &LogDock::find_next);
    clear_button = new QPushButton;
    connect(clear_button, &QPushButton::clicked, this, [this] { model.clear(); });

    auto* const tools = new QWidget;
    auto* const row = new QHBoxLayout(tools);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(filter_label);
    row->addWidget(filter_edit);
    row->addWidget(find_label);
    row->addWidget(find_edit);
    row->addWidget(clear_button);
    return tools;
}

QStringList LogDock::lines() const
{
    QStringList texts;
    for (int row = 0; row < filtered.rowCount(); ++row)
        texts += filtered.index(row, 0).data(LogModel::WHOLE).toString();
    return texts;
}

void LogDock::filter_begin()
{
    show();
    raise();
    filter_edit->setFocus(Qt::ShortcutFocusReason);
    filter_edit->selectAll();
}

void LogDock::find_begin()
{
    show();
    raise();
    find_edit->setFocus(Qt::ShortcutFocusReason);
    find_edit->selectAll();
}

void LogDock::take()
{
    const QScrollBar* const bar = view->verticalScrollBar();
    // A line that appears above the log takes some of its height.
    const bool at_end = bar->value() >= bar->maximum() - bar->pageStep();
    model.append(feed.take());
    if (at_end)
        view->scrollToBottom();
}

// From the line after the current one, and round the end.
void LogDock::find(int step)
{
    const QString text = find_edit->text();
    const int count = filtered.rowCount();
    if (text.isEmpty() || count == 0)
        return;
    int row = view->currentIndex().isValid() ? view->currentIndex().row() : (step > 0 ? -1 : 0);
    for (int tried = 0; tried < count; ++tried) {
        row = (row + step + count) % count;
        const QModelIndex index = filtered.index(row, 0);
        if (index.data(LogModel::WHOLE).toString().contains(text, Qt::CaseInsensitive)) {
            view->setCurrentIndex(index);
            view->scrollTo(index);
            return;
        }
    }
    view->clearSelection();
}

void LogDock::copy() const
{
    QModelIndexList chosen = view->selectionModel()->selectedIndexes();
    std::sort(chosen.begin(), chosen.end());
    QStringList texts;
    for (const QModelIndex& index : chosen)
        texts += index.data(LogModel::WHOLE).toString();
    QApplication::clipboard()->setText(texts.join('\n'));
}

void LogDock::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QDockWidget::changeEvent(event);
}

void LogDock::retranslate()
{
    setWindowTitle(tr("Log"));
    filter_label->setText(tr("Filter:"));
    filter_edit->setAccessibleName(tr("show only lines with this text"));
    find_label->setText(tr("Fi&nd:"));
    find_edit->setAccessibleName(tr("find this text in the log"));
    clear_button->setText(tr("Clear l&og"));
    view->setAccessibleName(tr("log lines"));
}
