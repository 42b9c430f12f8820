// The window: connection, pages, log, menus.
#pragma once

#include "workbench/appearance.h"
#include "workbench/language.h"
#include "workbench/logfeed.h"

#include <QMainWindow>

class ConnectionBar;
class ExchangePage;
class FirmwarePage;
class LogDock;
class QActionGroup;
class QTabWidget;
class SettingsPage;
class SearchPage;

class WorkbenchWindow : public QMainWindow
{
    Q_OBJECT

public:
    // Settings are kept in that INI file, whose folder is made if it is missing.
    explicit WorkbenchWindow(const QString& ini_path);
    ~WorkbenchWindow() override;

    ConnectionBar& connection() const { return *bar; }
    FirmwarePage& firmware() const { return *firmware_page; }
    SettingsPage& settings() const { return *settings_page; }
    ExchangePage& exchanges() const { return *exchange_page; }
    SearchPage& search() const { return *search_page; }

protected:
    void changeEvent(QEvent* event) override;
    // Asks while a run is under way; a yes aborts it, and the window closes at its end.
    void closeEvent(QCloseEvent* event) override;

private:
    void menus_create();
    QActionGroup* choices_create(QMenu* menu, const QStringList& values,
                                 void (WorkbenchWindow::*chosen)(const QString&));
    void language_choose(const QString& value);
    void palette_choose(const QString& value);
    void check_choice(QActionGroup* group, const QString& value);
    bool busy() const;
    void abort();
    bool close_confirmed();
    bool loss_confirmed();
    void load();
    void store() const;
    void retranslate();

    const QString ini_path;
    LogFeed feed; // outlives whoever logs
    Language language;
    Appearance appearance;
    QString language_stored;
    QString palette_stored;
    ConnectionBar* bar;
    QTabWidget* tabs;
    FirmwarePage* firmware_page;
    SettingsPage* settings_page;
    SearchPage* search_page;
    ExchangePage* exchange_page;
    LogDock* log;
    QMenu* file_menu;
    QMenu* view_menu;
    QMenu* language_menu;
    QMenu* palette_menu;
    QAction* quit_action;
    QAction* filter_action;
    QAction* find_action;
    QAction* find_next_action;
    QActionGroup* languages;
    QActionGroup* palettes;
    bool closing = false; // once the runs have ended
};
