#include "terminal/mainwindow.h"

#include "terminal/counter.h"
#include "ui_mainwindow.h"

#include <QFileDialog>

namespace {

// False with the file's errorString(). A write that is cut short gives its reason at the next one.
bool write_all(QFile& file, const QByteArray& data)
{
    for (qint64 done = 0; done < data.size();) {
        const qint64 n = file.write(data.constData() + done, data.size() - done);
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

// Lets out what the file still holds back.
bool close_all(QFile& file)
{
    file.close();
    return file.error() == QFileDevice::NoError;
}

} // namespace

void MainWindow::port_read()
{
    const qint64 n = port->bytesAvailable();
    QByteArray chunk(int(n), '\0');
    port->read(chunk.data(), n);
    if (!display_paused || save2file_active)
        recv_process(chunk);
    if (loop && !file_send) // an echo would land in the middle of the file
        port_write(chunk);
    rx_bytes = count_after(rx_bytes, n);
    rx_count_show(rx_bytes);
}

void MainWindow::recv_process(QByteArray& chunk)
{
    const QTime last = frame_clock;
    if (frame_mode || display_time)
        frame_clock = clock();
    const ChunkText text =
        chunk_text(chunk, {frame_mode, display_time, hex_display, frame_interval}, last,
                   frame_clock, line_open());
    tx_line_done = false;
    if (!display_paused)
        recv_display(text.prefix, text.data);
    if (save2file_active)
        save_write(text.prefix, text.data);
}

void MainWindow::recv_display(const QString& prefix, const QByteArray& data)
{
    ReceiveArea* const area = ui->plainTextEdit_recv;
    if (!prefix.isEmpty() || area->document()->characterCount() != recv_shown)
        recv_cut.forget();
    const TextStep step = recv_cut.next(data);
    area->append_chunk(prefix, step.text, step.replaced);
    recv_shown = area->document()->characterCount();
}

void MainWindow::save_write(const QString& prefix, const QByteArray& data)
{
    const bool begun = write_all(*save_file, prefix.toLatin1());
    if (!write_all(*save_file, data) || !begun)
        save_failure_note();
}

void MainWindow::save_failure_note()
{
    if (!save_failed)
        write_failure_show(*save_file);
    save_failed = true;
}

void MainWindow::write_failure_show(const QFile& file)
{
    // The reason first: a long path is cut.
    ui->statusBar->showMessage(
        tr("file can't be written: %1: %2").arg(file.errorString(), file.fileName()));
}

void MainWindow::tx_display()
{
    const QTime stamp = display_time ? clock() : QTime();
    const QString line = sent_line(ui->plainTextEdit_send->toPlainText(), stamp, line_open());
    ui->plainTextEdit_recv->append_line(line, QBrush(Qt::blue));
    recv_cut.forget();
    tx_line_done = true;
}

void MainWindow::on_checkBox_hex_display_stateChanged(int state)
{
    hex_display = state == Qt::Checked;
}

void MainWindow::on_checkBox_frame_mode_stateChanged(int state)
{
    frame_mode = state == Qt::Checked;
}

void MainWindow::on_checkBox_display_time_stateChanged(int arg1)
{
    display_time = arg1 == Qt::Checked;
}

void MainWindow::on_checkBox_display_tx_stateChanged(int arg1)
{
    display_tx = arg1 == Qt::Checked;
}

void MainWindow::on_spinBox_frame_interval_valueChanged(int arg1)
{
    frame_interval = arg1;
}

void MainWindow::on_checkBox_window_auto_clr_stateChanged(int arg1)
{
    QTextDocument* const document = ui->plainTextEdit_recv->document();
    if (arg1 == Qt::Unchecked)
        document->setMaximumBlockCount(0);
    else if (arg1 == Qt::Checked)
        document->setMaximumBlockCount(ui->spinBox_auto_clr_threshold->value());
}

void MainWindow::on_spinBox_auto_clr_threshold_valueChanged(int arg1)
{
    if (ui->checkBox_window_auto_clr->isChecked())
        ui->plainTextEdit_recv->document()->setMaximumBlockCount(arg1);
}

void MainWindow::on_pushButton_dsiplay_pause_clicked()
{
    display_paused = !display_paused;
    recv_cut.forget();
    ui->pushButton_dsiplay_pause->setText(display_paused ? tr("&resume") : tr("&pause"));
}

void MainWindow::on_pushButton_recv_clr_clicked()
{
    rx_bytes = 0;
    tx_bytes = 0;
    rx_count_show(0);
    tx_count_show(0);
}

void MainWindow::on_checkBox_loop_stateChanged(int arg1)
{
    if (arg1 == Qt::Checked) {
        ui->checkBox_send_in_turn->setChecked(false);
        ui->checkBox_send_in_turn->setEnabled(false);
        ui->checkBox_auto_send->setChecked(false);
        ui->checkBox_auto_send->setEnabled(false);
        loop = true;
    } else {
        loop = false;
        ui->checkBox_send_in_turn->setEnabled(true);
        ui->checkBox_auto_send->setEnabled(true);
    }
}

void MainWindow::on_pushButton_save2file_browse_clicked()
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Chose file to save"), ui->lineEdit_save2file_path->text(), "Any file (*.*)");
    if (!path.isEmpty())
        ui->lineEdit_save2file_path->setText(path);
}

void MainWindow::on_checkBox_save2file_clicked(bool checked)
{
    if (!checked) {
        save_end();
        return;
    }
    const QString path = ui->lineEdit_save2file_path->text();
    if (path.isEmpty()) {
        ui->checkBox_save2file->setChecked(false);
        warning_box(tr("save to file"), tr("please select a file to save"));
        return;
    }
    save_end();
    auto file = std::make_unique<QFile>(path);
    if (file->open(QIODevice::WriteOnly | QIODevice::Append)) {
        save_file = std::move(file);
        save2file_active = true;
        save_failed = false;
        return;
    }
    ui->checkBox_save2file->setChecked(false);
    warning_box(tr("save to file"), tr("open file failed"));
}

void MainWindow::save_end()
{
    save2file_active = false;
    if (!save_file)
        return;
    if (!close_all(*save_file))
        save_failure_note();
    save_file.reset();
}

void MainWindow::on_pushButton_window_save_clicked()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Chose file to save"), QString(),
                                                      tr("Text file (*.txt)"));
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        warning_box(tr("save window"), tr("open file failed"));
        return;
    }
    if (!write_all(file, ui->plainTextEdit_recv->toPlainText().toLatin1()) || !close_all(file))
        write_failure_show(file);
}
