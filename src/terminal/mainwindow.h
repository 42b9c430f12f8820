// The one window of the terminal: a port session, its receive and send paths, its list and its
// settings.
#pragma once

#include "serialport/qextserialenumerator.h"
#include "serialport/qextserialport.h"
#include "terminal/receivetext.h"
#include "terminal/stringrow.h"

#include <QByteArray>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QSettings>
#include <QString>
#include <QTime>
#include <QTimer>
#include <QTranslator>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class FileSend;
class FindBar;
class Option;
class PortDrain;
class QCheckBox;
class QProgressBar;
class Ui_MainWindow;

// Everything runs on the GUI thread, in slots. Message boxes and file dialogs run nested event
// loops: the port and the timer go on under them.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // Frames and stamps go by `time_of_day`.
    explicit MainWindow(QWidget* parent = nullptr,
                        std::function<QTime()> time_of_day = QTime::currentTime);
    ~MainWindow() override;

private slots:
    void msgbox(QString msg);
    void port_read();
    void strings_send_in_turn();
    void port_removed(QextPortInfo info);
    void auto_send_process();
    void on_pushButton_window_save_clicked();
    void on_pushButton_extend_clicked();
    void on_pushButton_open_clicked();
    void on_pushButton_send_clicked();
    void on_pushButton_crc_hash_clicked();
    void on_pushButton_recv_clr_clicked();
    void on_pushButton_dsiplay_pause_clicked();
    void on_pushButton_table_row_up_clicked();
    void on_pushButton_table_row_down_clicked();
    void on_pushButton_table_row_add_clicked();
    void on_pushButton_table_row_del_clicked();
    void on_pushButton_save2file_browse_clicked();
    void on_checkBox_hex_mode_stateChanged(int arg1);
    void on_checkBox_hex_display_stateChanged(int state);
    void on_checkBox_frame_mode_stateChanged(int state);
    void on_checkBox_display_time_stateChanged(int arg1);
    void on_checkBox_display_tx_stateChanged(int arg1);
    void on_checkBox_send_file_stateChanged(int arg1);
    void on_checkBox_auto_send_stateChanged(int arg1);
    void on_checkBox_send_in_turn_stateChanged(int arg1);
    void on_checkBox_window_auto_clr_stateChanged(int arg1);
    void on_checkBox_save2file_clicked(bool checked);
    void on_spinBox_auto_clr_threshold_valueChanged(int arg1);
    void on_spinBox_frame_interval_valueChanged(int arg1);
    void on_plainTextEdit_send_textChanged();
    void on_tableWidget_strings_cellClicked(int row, int column);
    void on_action_load_triggered();
    void on_action_store_triggered();
    void on_action_store_as_triggered();
    void on_checkBox_loop_stateChanged(int arg1);
    void on_action_about_triggered();

private:
    void status_bar_fill();
    void title_update();
    void information_box(const QString& text);
    void warning_box(const QString& title, const QString& text);
    void rx_count_show(int n);
    void tx_count_show(int n);
    void send_count_show(int n);

    void language_load(QString language);
    void accessible_names_set();

    void shortcuts_create();
    FindBar* find_bar_get();

    void config_load();
    void config_store();
    std::vector<Option> options();
    void send_text_store(QSettings& settings) const;
    void strings_show(const std::vector<StringRow>& rows);
    std::vector<StringRow> strings() const;

    void port_open();
    bool port_awaited(PortDrain* last, const QString& port_name);
    void port_close();
    void session_begin(const QString& port_name, const PortSettings& settings);

    void recv_process(QByteArray& chunk);
    void recv_display(const QString& prefix, const QByteArray& data);
    void save_write(const QString& prefix, const QByteArray& data);
    void save_end();
    void save_failure_note();
    // Stays in the status bar until something else shows there.
    void write_failure_show(const QFile& file);
    void tx_display();
    // What the receive area shows doesn't end in a line of sent text.
    bool line_open() const { return rx_bytes != 0 && !tx_line_done; }

    bool send_data_parse();
    // The one write path for what the user sends and for the echo.
    bool port_write(QByteArray& data);
    // Its second half: writes and counts; an error ends the session.
    bool port_put(const QByteArray& data);
    void write_failed();
    bool send_count_reached() const;
    void send_timer_start(int interval_ms, void (MainWindow::*slot)());
    void send_timer_stop();
    // Informs the user and unchecks the box when no port is open.
    bool timed_mode_may_start(QCheckBox* box);

    void file_send_start();
    void file_send_pump();
    void file_send_show();
    void file_send_end();

    void row_insert(int row);
    void row_load(int row);
    void row_swap(int row, int other);
    void row_show(int row, const StringRow& shown);
    StringRow row_shown(int row) const;

    QTranslator translator;
    QString language;
    QString cfg_file;
    std::unique_ptr<Ui_MainWindow> ui;
    QextSerialPort* port = nullptr;
    QextSerialEnumerator* enumerator = nullptr;
    QLabel* label_port = nullptr;
    QLabel* label_rx = nullptr;
    QLabel* label_tx = nullptr;
    QLabel* label_cnt = nullptr;
    QByteArray send_data;
    bool send_data_valid = false;
    bool save2file_active = false;
    std::unique_ptr<QFile> save_file;
    QTimer* send_timer = nullptr;
    QTime frame_clock;
    int rx_bytes = 0;
    int tx_bytes = 0;
    int send_count = 0;
    int frame_interval = 0; // ms
    int turn_cursor = 0;
    bool tx_line_done = false;
    bool frame_mode = false;
    bool display_time = false;
    bool display_tx = false;
    bool display_paused = false;
    bool hex_display = false;
    bool hex_mode_send = false;
    bool loop = false;

    std::unique_ptr<QTranslator> qt_translator; // null where Qt's catalogue is missing
    bool save_failed = false;                   // the status bar has said so of this save_file
    std::function<QTime()> clock;
    CutText recv_cut;   // what the last chunk's end may still need
    int recv_shown = 0; // characters in the receive area after it
    // Notes that are open: a failed parse or write shows one in the middle of its work, so a tick
    // of send_timer under one does nothing. Under other boxes and dialogs sending goes on.
    int open_notes = 0;
    int opens = 0;                // the dialog of an open was accepted so many times
    bool session_failing = false; // the box about a failed write is open, the close comes after it
    std::unique_ptr<FileSend> file_send;   // set while a file goes out, and with it:
    QProgressBar* file_progress = nullptr; // in the status bar, shown while a file goes out
    std::int64_t file_shown_ms = 0;        // when the progress was last shown
    FindBar* find_bar = nullptr;           // the receive area's child, made when it is first wanted
};
