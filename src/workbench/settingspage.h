// The page that reads and writes the settings of a Dorv module.
#pragma once

#include "workbench/settingsrun.h"
#include "workbench/settingstable.h"

#include <QWidget>

class ConnectionBar;
class Notice;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableView;

class SettingsPage : public QWidget
{
    Q_OBJECT

public:
    // The connection outlives it.
    SettingsPage(ConnectionBar& connection, QWidget* parent);

    const SettingsTable& settings() const { return table; }
    // Something would be lost by closing now.
    bool busy() const { return run.running(); }
    // Values have been typed that no module holds.
    bool unwritten() const { return !table.differing().isEmpty(); }
    void abort() { run.abort(); }

signals:
    // The run has ended.
    void idle();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* table_create();
    QLayout* buttons_create();
    QWidget* run_row_create();
    QPushButton* button_create(const char* name, void (SettingsPage::*slot)());
    void connect_all();

    void all_read();
    void selection_read();
    void differing_write();
    void selection_write();
    void command_mode_begin();
    void stop();
    void file_compare();
    void file_save();

    void read(const QVector<int>& rows);
    void write(const QVector<int>& rows);
    void start(const QVector<SettingTask>& tasks);
    void run_end(const SettingsReport& report);
    QVector<int> selection() const;
    void hint_show();
    void buttons_set();
    void retranslate();

    ConnectionBar& connection;
    SettingsTable table;
    SettingsRun run;
    QTableView* view;
    QLabel* hint;
    QPushButton* read_all_button;
    QPushButton* read_button;
    QPushButton* compare_button;
    QPushButton* save_button;
    QPushButton* write_all_button;
    QPushButton* write_button;
    QPushButton* mode_button;
    QProgressBar* bar;
    QPushButton* stop_button;
    Notice* notice;
};
