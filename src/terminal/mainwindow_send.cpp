#include "terminal/mainwindow.h"

#include "checksum/hashselectdialog.h"
#include "linkcfg/inifile.h"
#include "terminal/counter.h"
#include "terminal/sendtext.h"
#include "terminal/settingkeys.h"
#include "ui_mainwindow.h"

#include <memory>

bool MainWindow::port_write(QByteArray& data)
{
    if (!port || !port->isOpen()) {
        msgbox(tr("port not opened"));
        return false;
    }
    if (data.isEmpty())
        return true;
    if (display_tx && !display_paused && !loop)
        tx_display();
    return port_put(data);
}

bool MainWindow::port_put(const QByteArray& data)
{
    if (port->write(data) < 0) {
        write_failed();
        return false;
    }
    tx_bytes = count_after(tx_bytes, data.size());
    tx_count_show(tx_bytes);
    send_count = count_after(send_count, 1);
    send_count_show(send_count);
    return true;
}

void MainWindow::write_failed()
{
    // Under the box the port goes on failing: echoes of loop mode come here again.
    if (session_failing)
        return;
    session_failing = true;
    msgbox(tr("port write error: ") + port->errorString());
    session_failing = false;
    port_close();
}

void MainWindow::on_pushButton_send_clicked()
{
    if (ui->checkBox_send_file->isChecked())
        file_send_start();
    else if (send_data_valid)
        port_write(send_data);
}

void MainWindow::on_pushButton_crc_hash_clicked()
{
    const auto dialog = std::make_unique<HashSelectDialog>(send_data, this);
    if (dialog->exec() == QDialog::Accepted && dialog->append_checked() && !send_data.isEmpty())
        ui->plainTextEdit_send->insertPlainText(" " + dialog->result_text());
}

void MainWindow::on_plainTextEdit_send_textChanged()
{
    if (!ui->checkBox_send_file->isChecked())
        send_data_valid = send_data_parse();
}

bool MainWindow::send_data_parse()
{
    const SendMode mode = hex_mode_send                        ? SendMode::Hex
                          : ui->checkBox_raw_text->isChecked() ? SendMode::Raw
                                                               : SendMode::Escaped;
    const SendText parsed = send_text(ui->plainTextEdit_send->toPlainText(), mode);
    send_data = parsed.bytes;
    if (parsed.error == SendText::NONE)
        return true;
    // The box lets timers run: nothing may find the partial result valid.
    send_data_valid = false;
    msgbox(parsed.error_text());
    return false;
}

void MainWindow::on_checkBox_hex_mode_stateChanged(int arg1)
{
    IniFile settings(cfg_file);
    hex_mode_send = arg1 == Qt::Checked;
    settings.beginGroup("serial_tool");
    ui->plainTextEdit_send->clear();
    ui->plainTextEdit_send->appendPlainText(send_text_setting(hex_mode_send).read(settings));
    settings.endGroup();
    ui->checkBox_raw_text->setEnabled(!hex_mode_send);
}

void MainWindow::send_timer_start(int interval_ms, void (MainWindow::*slot)())
{
    connect(send_timer, &QTimer::timeout, this, slot);
    send_timer->setInterval(interval_ms);
    send_timer->start();
}

void MainWindow::send_timer_stop()
{
    send_timer->stop();
    send_timer->disconnect(SIGNAL(timeout()));
}

bool MainWindow::timed_mode_may_start(QCheckBox* box)
{
    if (port && port->isOpen())
        return true;
    msgbox(tr("please open a port first"));
    box->setChecked(false);
    return false;
}

void MainWindow::on_checkBox_auto_send_stateChanged(int arg1)
{
    if (arg1 == Qt::Checked) {
        if (!timed_mode_may_start(ui->checkBox_auto_send))
            return;
        ui->checkBox_send_file->setEnabled(false);
        ui->checkBox_send_in_turn->setEnabled(false);
        send_count = 0;
        send_timer_start(ui->spinBox_send_interval->value(), &MainWindow::auto_send_process);
    } else if (arg1 == Qt::Unchecked) {
        send_timer_stop();
        ui->checkBox_send_file->setEnabled(true);
        ui->checkBox_send_in_turn->setEnabled(true);
    }
}

void MainWindow::auto_send_process()
{
    if (open_notes > 0 || !send_data_valid)
        return;
    port_write(send_data);
    if (send_count_reached())
        ui->checkBox_auto_send->setChecked(false);
}

bool MainWindow::send_count_reached() const
{
    return limit_reached(ui->spinBox_send_count->value(), send_count);
}
