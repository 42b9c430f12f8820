#include "workbench/workbenchwindow.h"

#include "linkcfg/inifile.h"
#include "workbench/connectionbar.h"
#include "workbench/exchangepage.h"
#include "workbench/firmwarepage.h"
#include "workbench/icons.h"
#include "workbench/logdock.h"
#include "workbench/searchpage.h"
#include "workbench/settingkeys.h"
#include "workbench/settingspage.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QTabWidget>
#include <QVBoxLayout>

WorkbenchWindow::WorkbenchWindow(const QString& ini_path)
    : ini_path(ini_path)
{
    setObjectName("workbench");
    setWindowIcon(QIcon::fromTheme("tarnwick", QIcon(":/icon/title_corvane.png")));
    QDir().mkpath(QFileInfo(ini_path).absolutePath());
    bar = new ConnectionBar(feed, ini_path, nullptr);
    tabs = new QTabWidget;
    tabs->setObjectName("pages");
    tabs->setDocumentMode(true);
    firmware_page = new FirmwarePage(*bar, feed, nullptr);
    tabs->addTab(firmware_page, QString());
    settings_page = new SettingsPage(*bar, nullptr);
    tabs->addTab(settings_page, QString());
    search_page = new SearchPage(*bar);
    tabs->addTab(search_page, QString());
    exchange_page = new ExchangePage(*bar);
    tabs->addTab(exchange_page, QString());
    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar);
    layout->addWidget(tabs, 1);
    setCentralWidget(content);
    log = new LogDock(feed, this);
    addDockWidget(Qt::BottomDockWidgetArea, log);
    menus_create();
    const auto close_at_last = [this] {
        if (closing)
            close();
    };
    connect(firmware_page, &FirmwarePage::idle, this, close_at_last, Qt::QueuedConnection);
    connect(settings_page, &SettingsPage::idle, this, close_at_last, Qt::QueuedConnection);
    connect(search_page, &SearchPage::idle, this, close_at_last, Qt::QueuedConnection);
    connect(exchange_page, &ExchangePage::idle, this, close_at_last, Qt::QueuedConnection);
    resize(1100, 760);
    load();
    retranslate();
}

// The pages go before the connection that they work on, and both before the feed.
WorkbenchWindow::~WorkbenchWindow()
{
    delete exchange_page;
    delete search_page;
    delete settings_page;
    delete firmware_page;
    delete bar;
    delete log;
}

void WorkbenchWindow::menus_create()
{
    file_menu = menuBar()->addMenu(QString());
    quit_action = file_menu->addAction(QString(), this, &QWidget::close);
    quit_action->setShortcut(QKeySequence::Quit);
    view_menu = menuBar()->addMenu(QString());
    view_menu->addAction(log->toggleViewAction());
    filter_action = view_menu->addAction(QString(), log, &LogDock::filter_begin);
    filter_action->setShortcut(QKeySequence("Ctrl+Shift+F"));
    find_action = view_menu->addAction(QString(), log, &LogDock::find_begin);
    find_action->setShortcut(QKeySequence::Find);
    find_next_action = view_menu->addAction(QString(), log, &LogDock::find_next);
    find_next_action->setShortcut(QKeySequence::FindNext);
    view_menu->addSeparator();
    language_menu = view_menu->addMenu(QString());
    languages = choices_create(language_menu, {QString(), Language::CHINESE, Language::ENGLISH},
                               &WorkbenchWindow::language_choose);
    palette_menu = view_menu->addMenu(QString());
    palettes = choices_create(palette_menu, {QString(), Appearance::LIGHT, Appearance::DARK},
                              &WorkbenchWindow::palette_choose);
}

QActionGroup* WorkbenchWindow::choices_create(QMenu* menu, const QStringList& values,
                                              void (WorkbenchWindow::*chosen)(const QString&))
{
    auto* const group = new QActionGroup(this);
    for (const QString& value : values) {
        QAction* const action = menu->addAction(QString());
        action->setCheckable(true);
        action->setData(value);
        group->addAction(action);
    }
    connect(group, &QActionGroup::triggered, this,
            [this, chosen](QAction* action) { (this->*chosen)(action->data().toString()); });
    return group;
}

void WorkbenchWindow::check_choice(QActionGroup* group, const QString& value)
{
    for (QAction* const action : group->actions())
        action->setChecked(action->data().toString() == value);
}

void WorkbenchWindow::language_choose(const QString& value)
{
    language_stored = value;
    check_choice(languages, value);
    language.use(value);
}

void WorkbenchWindow::palette_choose(const QString& value)
{
    palette_stored = value;
    check_choice(palettes, value);
    appearance.use(value);
}

void WorkbenchWindow::load()
{
    const IniFile ini(ini_path);
    language_choose(LANGUAGE.read(ini));
    palette_choose(PALETTE.read(ini));
    bar->load(ini);
    firmware_page->load(ini);
    search_page->load(ini);
    exchange_page->load(ini);
    restoreGeometry(GEOMETRY.read(ini));
    restoreState(STATE.read(ini));
}

void WorkbenchWindow::store() const
{
    IniFile ini(ini_path);
    LANGUAGE.write_if_changed(ini, language_stored);
    PALETTE.write_if_changed(ini, palette_stored);
    bar->store(ini);
    firmware_page->store(ini);
    search_page->store(ini);
    exchange_page->store(ini);
    GEOMETRY.write_if_changed(ini, saveGeometry());
    STATE.write_if_changed(ini, saveState());
}

bool WorkbenchWindow::busy() const
{
    return firmware_page->busy() || settings_page->busy() || search_page->busy() ||
           exchange_page->busy();
}

void WorkbenchWindow::abort()
{
    firmware_page->abort();
    settings_page->abort();
    search_page->abort();
    exchange_page->abort();
}

bool WorkbenchWindow::close_confirmed()
{
    if (firmware_page->busy())
        return QMessageBox::question(
                   this, tr("Upgrade under way"),
                   tr("An upgrade is under way. Stop it and close?\nThe module stays in its boot "
                      "code; another run completes what this one began.")) == QMessageBox::Yes;
    if (settings_page->busy())
        return QMessageBox::question(
                   this, tr("Settings under way"),
                   tr("Settings are being read or written. Stop after the one under "
                      "way and close?")) == QMessageBox::Yes;
    return QMessageBox::question(this, tr("Link in use"),
                                 tr("A search or an exchange is under way. Stop it and close?")) ==
           QMessageBox::Yes;
}

bool WorkbenchWindow::loss_confirmed()
{
    if (!settings_page->unwritten() && !search_page->unwritten())
        return true;
    return QMessageBox::question(this, tr("Values not written"),
                                 tr("Values have been typed that aren't written to a device. Close "
                                    "and lose them?"),
                                 QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No) == QMessageBox::Yes;
}

void WorkbenchWindow::closeEvent(QCloseEvent* event)
{
    if (busy()) {
        event->ignore();
        if (closing)
            return;
        closing = close_confirmed();
        if (closing && busy())
            return abort();
        if (!closing)
            return;
    }
    closing = false; // an end that comes during the question closes nothing
    closing = loss_confirmed();
    if (!closing)
        return event->ignore();
    store();
    event->accept();
}

void WorkbenchWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMainWindow::changeEvent(event);
}

void WorkbenchWindow::retranslate()
{
    setWindowTitle(tr("Tarnwick Workbench"));
    tabs->setTabText(tabs->indexOf(firmware_page), tr("F&irmware"));
    tabs->setTabText(tabs->indexOf(settings_page), tr("Mod&ule settings"));
    tabs->setTabText(tabs->indexOf(search_page), tr("S&earch"));
    tabs->setTabText(tabs->indexOf(exchange_page), tr("E&xchanges"));
    file_menu->setTitle(tr("&File"));
    quit_action->setText(tr("&Quit"));
    quit_action->setIcon(theme_icon("application-exit", QStyle::SP_DialogCloseButton));
    view_menu->setTitle(tr("Vie&w"));
    filter_action->setText(tr("Fil&ter the log"));
    find_action->setText(tr("&Find in the log"));
    find_next_action->setText(tr("Find &next"));
    language_menu->setTitle(tr("&Language"));
    languages->actions()[0]->setText(tr("As the &desktop"));
    languages->actions()[1]->setText(QStringLiteral("中文"));
    languages->actions()[2]->setText(QStringLiteral("English"));
    palette_menu->setTitle(tr("&Colours"));
    palettes->actions()[0]->setText(tr("As the &desktop"));
    palettes->actions()[1]->setText(tr("&Light"));
    palettes->actions()[2]->setText(tr("D&ark"));
}
