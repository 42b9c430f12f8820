// The log: what the links and tools did, with a filter and a search.
#pragma once

#include "workbench/logmodel.h"

#include <QDockWidget>
#include <QSortFilterProxyModel>
#include <QTimer>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;

class LogDock : public QDockWidget
{
    Q_OBJECT

public:
    // `feed` outlives it.
    LogDock(LogFeed& feed, QWidget* parent);

    // The lines that the filter lets through.
    QStringList lines() const;

public slots:
    void filter_begin();
    void find_begin();
    void find_next() { find(1); }
    void find_previous() { find(-1); }

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* tools_create();
    void take();
    void find(int step);
    void copy() const;
    void retranslate();

    LogFeed& feed;
    LogModel model;
    QSortFilterProxyModel filtered;
    QTimer pace; // lines are shown in batches
    QListView* view;
    QLabel* filter_label;
    QLineEdit* filter_edit;
    QLabel* find_label;
    QLineEdit* find_edit;
    QPushButton* clear_button;
};
