#include "terminal/mainwindow.h"

#include "terminal/filesend.h"
#include "ui_mainwindow.h"

#include <QFileDialog>
#include <QProgressBar>

namespace {

// How often the progress moves; more would only cost time that the data needs.
constexpr int PROGRESS_INTERVAL_MS = 100;
constexpr int RESULT_SHOWN_MS = 8000;

} // namespace

void MainWindow::on_checkBox_send_file_stateChanged(int arg1)
{
    const std::initializer_list<QWidget*> locked = {
        ui->checkBox_auto_send,  ui->checkBox_hex_mode,  ui->checkBox_send_in_turn,
        ui->pushButton_crc_hash, ui->plainTextEdit_send, ui->tableWidget_strings};
    if (arg1 == Qt::Checked) {
        for (QWidget* widget : locked)
            widget->setEnabled(false);
        const QString path = QFileDialog::getOpenFileName(this, tr("Chose file to send"), QString(),
                                                          tr("Any file (*.*)"));
        // A close of the port under the dialog has ended the mode already.
        if (!ui->checkBox_send_file->isChecked())
            return;
        ui->plainTextEdit_send->setPlainText(path);
    } else if (arg1 == Qt::Unchecked) {
        file_send_end();
        on_checkBox_hex_mode_stateChanged(ui->checkBox_hex_mode->checkState());
        for (QWidget* widget : locked)
            widget->setEnabled(true);
    }
}

void MainWindow::file_send_start()
{
    if (file_send)
        return;
    if (!port || !port->isOpen()) {
        msgbox(tr("port not opened"));
        return;
    }
    const QString path = ui->plainTextEdit_send->toPlainText();
    if (path.isEmpty()) {
        msgbox(tr("please select a file to send"));
        return;
    }
    auto fresh = std::make_unique<FileSend>(path, port->portSettings().BaudRate);
    if (!fresh->open()) {
        msgbox(tr("file %1 can't be read: %2").arg(path, fresh->error_string()));
        return;
    }
    file_send = std::move(fresh);
    ui->statusBar->clearMessage();
    file_send_show();
    file_progress->show();
    connect(port, &QIODevice::bytesWritten, this, &MainWindow::file_send_pump);
    if (display_tx && !display_paused && !loop)
        tx_display();
    file_send_pump();
}

void MainWindow::file_send_pump()
{
    if (!file_send || port->bytesToWrite() > 0)
        return;
    const QByteArray chunk = file_send->next_chunk();
    if (file_send->has_failed()) {
        const QString reason = file_send->error_string();
        file_send_end();
        msgbox(tr("file %1 can't be read: %2").arg(ui->plainTextEdit_send->toPlainText(), reason));
    } else if (chunk.isEmpty()) {
        const QString result = tr("file sent: %1").arg(file_send->progress_text());
        file_send_end();
        ui->statusBar->showMessage(result, RESULT_SHOWN_MS);
    } else if (port_put(chunk) && file_send->elapsed_ms() - file_shown_ms >= PROGRESS_INTERVAL_MS) {
        file_send_show();
    }
}

void MainWindow::file_send_show()
{
    file_shown_ms = file_send->elapsed_ms();
    file_progress->setFormat(file_send->progress_text());
    file_progress->setValue(file_send->permille());
}

void MainWindow::file_send_end()
{
    if (!file_send)
        return;
    file_send.reset();
    file_progress->hide();
    disconnect(port, &QIODevice::bytesWritten, this, nullptr);
}
