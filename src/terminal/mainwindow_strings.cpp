#include "terminal/mainwindow.h"

#include "terminal/stringcolumns.h"
#include "ui_mainwindow.h"

void MainWindow::row_insert(int row)
{
    QTableWidget* const table = ui->tableWidget_strings;
    table->insertRow(row);
    auto* const send = new QTableWidgetItem(tr("send"));
    send->setFlags(Qt::ItemIsEnabled);
    table->setItem(row, OPERATION_COLUMN, send);
    for (const int column : {ALIAS_COLUMN, VALUE_COLUMN}) {
        auto* const cell = new QTableWidgetItem;
        cell->setCheckState(Qt::Unchecked);
        table->setItem(row, column, cell);
    }
}

void MainWindow::row_load(int row)
{
    const QTableWidgetItem* const cell = ui->tableWidget_strings->item(row, VALUE_COLUMN);
    const QString text = cell->text();
    if (text.isEmpty())
        return;
    hex_mode_send = cell->checkState() == Qt::Checked;
    ui->checkBox_hex_mode->setChecked(hex_mode_send);
    ui->plainTextEdit_send->setPlainText(text);
}

void MainWindow::on_tableWidget_strings_cellClicked(int row, int column)
{
    if (column != OPERATION_COLUMN ||
        ui->tableWidget_strings->item(row, VALUE_COLUMN)->text().isEmpty())
        return;
    row_load(row);
    if (send_data_valid)
        port_write(send_data);
}

void MainWindow::on_pushButton_table_row_add_clicked()
{
    QTableWidget* const table = ui->tableWidget_strings;
    const int row = table->currentRow() + 1;
    row_insert(row);
    table->setCurrentCell(row, VALUE_COLUMN);
    table->resizeRowToContents(row);
}

void MainWindow::on_pushButton_table_row_del_clicked()
{
    QTableWidget* const table = ui->tableWidget_strings;
    const int row = table->currentRow();
    if (row < 0)
        return;
    table->removeRow(row);
    if (row < table->rowCount())
        table->setCurrentCell(row, VALUE_COLUMN);
}

void MainWindow::row_swap(int row, int other)
{
    QTableWidget* const table = ui->tableWidget_strings;
    for (int column = ALIAS_COLUMN; column < table->columnCount(); ++column) {
        QTableWidgetItem* const cell = table->takeItem(row, column);
        table->setItem(row, column, table->takeItem(other, column));
        table->setItem(other, column, cell);
    }
    table->setCurrentCell(other, OPERATION_COLUMN,
                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void MainWindow::on_pushButton_table_row_up_clicked()
{
    const int row = ui->tableWidget_strings->currentRow();
    if (row > 0)
        row_swap(row, row - 1);
}

void MainWindow::on_pushButton_table_row_down_clicked()
{
    const int row = ui->tableWidget_strings->currentRow();
    if (row >= 0 && row < ui->tableWidget_strings->rowCount() - 1)
        row_swap(row, row + 1);
}

void MainWindow::on_checkBox_send_in_turn_stateChanged(int arg1)
{
    if (arg1 == Qt::Checked) {
        if (!timed_mode_may_start(ui->checkBox_send_in_turn))
            return;
        turn_cursor = 0;
        send_count = 0;
        ui->checkBox_send_file->setEnabled(false);
        ui->checkBox_auto_send->setEnabled(false);
        send_timer_start(ui->spinBox_send_in_turn_interval->value(),
                         &MainWindow::strings_send_in_turn);
    } else if (arg1 == Qt::Unchecked) {
        send_timer_stop();
        ui->checkBox_send_file->setEnabled(true);
        ui->checkBox_auto_send->setEnabled(true);
    }
}

bool MainWindow::row_qualifies(int row) const
{
    const QTableWidget* const table = ui->tableWidget_strings;
    return table->item(row, ALIAS_COLUMN)->checkState() == Qt::Checked &&
           !table->item(row, VALUE_COLUMN)->text().isEmpty();
}

void MainWindow::strings_send_in_turn()
{
    if (open_notes > 0)
        return;
    const int rows = ui->tableWidget_strings->rowCount();
    for (int look = 0; look < rows; ++look) {
        const int row = turn_cursor < rows ? turn_cursor : 0;
        turn_cursor = row + 1;
        if (!row_qualifies(row))
            continue;
        row_load(row);
        if (!send_data_valid || !port_write(send_data) || send_count_reached())
            ui->checkBox_send_in_turn->setChecked(false);
        return;
    }
    ui->checkBox_send_in_turn->setChecked(false);
    msgbox(tr("No strings found in list"));
}

void MainWindow::on_pushButton_extend_clicked()
{
    const bool show = !ui->dockWidget_extend->isVisible();
    ui->dockWidget_extend->setVisible(show);
    ui->pushButton_extend->setText(show ? tr("&hide>>") : tr("&extend<<"));
}
