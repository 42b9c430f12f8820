// The page that puts new firmware into modules.
#pragma once

#include "workbench/modulelist.h"

#include <QWidget>

class ConnectionBar;
class DeviceBox;
class Notice;
class PageLegend;
class PageMapView;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSettings;
class QTableView;
class RunSettingsBox;

class FirmwarePage : public QWidget
{
    Q_OBJECT

public:
    // Both outlive it.
    FirmwarePage(ConnectionBar& connection, LogFeed& feed, QWidget* parent);

    const ModuleList& modules() const { return list; }
    // Something would be lost by closing now.
    bool busy() const { return list.running() > 0; }
    void abort() { list.abort(); }
    void file_set(const QString& path);
    // One more module, on a link of its own.
    void module_add(const StackDescription& stack);

    void load(const QSettings& ini);
    void store(QSettings& ini) const;

signals:
    // The last run has ended.
    void idle();

protected:
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QWidget* file_row_create();
    QWidget* modules_create();
    QWidget* details_create();
    QWidget* run_row_create();
    void connect_list();
    QPushButton* button_create(const char* name, void (FirmwarePage::*slot)());

    void file_choose();
    void file_check();
    void start();
    void stop();
    void module_ask();
    void module_remove();
    void results_save();
    void module_show();
    void result_show();
    void module_end();
    void buttons_set();
    void retranslate();
    int current_row() const;

    ConnectionBar& connection;
    ModuleList list;
    FirmwareFile file;
    QLabel* file_label;
    QLineEdit* file_edit;
    QPushButton* file_button;
    QLabel* file_size;
    QTableView* table;
    QPushButton* add_button;
    QPushButton* remove_button;
    QPushButton* save_button;
    DeviceBox* device;
    PageMapView* map;
    PageLegend* legend;
    QLabel* page_label;
    RunSettingsBox* settings;
    QProgressBar* bar;
    QLabel* transfer;
    QPushButton* start_button;
    QPushButton* stop_button;
    Notice* notice;
};
