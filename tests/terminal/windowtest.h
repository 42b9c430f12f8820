// A real window over a real pseudo-terminal, and somebody who answers the dialogs it opens.
#pragma once

#include "plainsettings.h"
#include "pty.h"
#include "sandbox.h"
#include "terminal/mainwindow.h"
#include "terminal/stringcolumns.h"
#include "wait.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

constexpr char INI[] = "tarnwick.ini";
constexpr char AUTO_SEND[] = "checkBox_auto_send", IN_TURN[] = "checkBox_send_in_turn",
               SEND_FILE[] = "checkBox_send_file", LOOP[] = "checkBox_loop",
               HEX_MODE[] = "checkBox_hex_mode", RAW_TEXT[] = "checkBox_raw_text",
               SHOW_SENT[] = "checkBox_display_tx", SEND[] = "pushButton_send",
               OPEN[] = "pushButton_open";

// Answers each modal dialog as soon as it is up, and remembers the message boxes.
class Answers : public QObject
{
public:
    Answers();

    QStringList boxes;                  // "title|text" of each, in order
    QString file;                       // for file dialogs; empty cancels them
    QString port;                       // the same for the link dialog
    std::function<void()> under_box;    // runs once while a message box is open
    std::function<void()> under_dialog; // the same for another dialog

private:
    void answer();

    QTimer timer;
};

class WindowTest : public testing::Test
{
protected:
    WindowTest();

    // English texts, and what else a test wants in the configuration file. Before window_start().
    void configure(const QString& key, const QVariant& value);
    QString stored(const QString& key, const QString& path = INI) const;
    void window_start(); // ends the last one
    void window_end() { window.reset(); }
    // Presses open and chooses the pseudo-terminal.
    bool port_open();

    template <typename Widget> Widget* find(const char* name) const
    {
        Widget* const widget = window->findChild<Widget*>(name);
        if (!widget)
            throw std::runtime_error(std::string("no widget ") + name);
        return widget;
    }
    bool enabled(const char* name) const { return find<QWidget>(name)->isEnabled(); }
    QStringList disabled() const; // of the widgets that a session and its modes lock
    bool checked(const char* box) const { return find<QCheckBox>(box)->isChecked(); }
    void check(const char* box, bool on = true) { find<QCheckBox>(box)->setChecked(on); }
    void click(const char* button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    void command(const char* action, const QString& file = {}); // of the menu
    void set(const char* spin_box, int value) { find<QSpinBox>(spin_box)->setValue(value); }
    QString label(const char* button) const { return find<QPushButton>(button)->text(); }
    bool closed() const { return label(OPEN) == "&open"; }
    void type(const QString& text) { send_area()->setPlainText(text); }
    QString typed() const { return send_area()->toPlainText(); }
    void send(const QString& text);
    QString shown() const { return find<QPlainTextEdit>("plainTextEdit_recv")->toPlainText(); }
    QTableWidget* table() const { return find<QTableWidget>("tableWidget_strings"); }
    QTableWidgetItem* alias(int row) const { return table()->item(row, ALIAS_COLUMN); }
    QTableWidgetItem* value(int row) const { return table()->item(row, VALUE_COLUMN); }
    void set_row(int row, bool marked, bool hex, const QString& text);
    // The port and its settings in the status bar, and what follows it: "CNT: 1 TX: 2 RX: 3".
    QString description() const { return status().value(1); }
    QString counters() const { return status().mid(2).join(' '); }
    QStringList boxes_taken() { return std::exchange(answers.boxes, {}); }
    // Makes a file and answers file dialogs with it.
    QByteArray file_choose(int size);
    // Sends bytes to the window and waits until it has counted `total` received ones.
    bool receive(const QByteArray& data, int total);

    Sandbox sandbox;
    Pty pty;
    QString port_name;
    Answers answers;
    std::function<QTime()> clock = QTime::currentTime; // before window_start()
    std::unique_ptr<MainWindow> window;

private:
    QPlainTextEdit* send_area() const { return find<QPlainTextEdit>("plainTextEdit_send"); }
    QStringList status() const;
};

class OpenWindowTest : public WindowTest
{
protected:
    OpenWindowTest()
    {
        window_start();
        EXPECT_TRUE(port_open());
    }
};
