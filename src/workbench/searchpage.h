// The page that searches for devices.
#pragma once

#include "workbench/devicetable.h"
#include "workbench/heatmap.h"

#include <QWidget>

class BlockBox;
class ConnectionBar;
class HeatLegend;
class HeatMapView;
class Notice;
class QLabel;
class QProgressBar;
class QPushButton;
class QSettings;
class QTableView;
class SearchBox;

class SearchPage : public QWidget
{
    Q_OBJECT

public:
    // Outlives it.
    explicit SearchPage(ConnectionBar& connection, QWidget* parent = nullptr);

    // Something would be lost by closing now.
    bool busy() const;
    // Words have been changed that the device doesn't hold.
    bool unwritten() const;
    // What is under way ends after its exchange.
    void abort();
    const HeatMap& map() const { return heat; }
    const DeviceTable& devices() const { return list; }

    void load(const QSettings& ini);
    void store(QSettings& ini) const;

signals:
    // The last run has ended.
    void idle();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* map_create();
    QWidget* found_create();
    QWidget* run_row_create();
    void connect_run();
    void connect_choices();
    QPushButton* button_create(const char* name, void (SearchPage::*slot)());

    void start();
    void device_add(const FoundDevice& device);
    void device_choose(const QModelIndex& index);
    void run_end(const SearchReport& report);
    void keys_keep();
    void page_set();
    void retranslate();

    ConnectionBar& connection;
    SearchRun run;
    HeatMap heat;
    DeviceTable list;
    SearchBox* settings;
    QWidget* map_part;
    HeatMapView* view;
    HeatLegend* legend;
    QLabel* cell_label;
    QTableView* table;
    BlockBox* block;
    QProgressBar* bar;
    QPushButton* start_button;
    QPushButton* stop_button;
    Notice* notice;
};
