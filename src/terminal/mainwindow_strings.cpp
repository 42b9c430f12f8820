#include "terminal/mainwindow.h"

#include "terminal/stringcolumns.h"
#include "ui_mainwindow.h"

namespace {

constexpr int FEWEST_ROWS = 8; // after a load

Qt::CheckState check_state(bool checked)
{
    return checked ? Qt::Checked : Qt::Unchecked;
}

} // namespace

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

void MainWindow::row_show(int row, const StringRow& shown)
{
    QTableWidgetItem* const alias = ui->tableWidget_strings->item(row, ALIAS_COLUMN);
    QTableWidgetItem* const value = ui->tableWidget_strings->item(row, VALUE_COLUMN);
    alias->setCheckState(check_state(shown.in_turn));
    alias->setText(shown.alias);
    value->setCheckState(check_state(shown.is_hex));
    value->setText(shown.value);
}

StringRow MainWindow::row_shown(int row) const
{
    const QTableWidgetItem* const alias = ui->tableWidget_strings->item(row, ALIAS_COLUMN);
    const QTableWidgetItem* const value = ui->tableWidget_strings->item(row, VALUE_COLUMN);
    return {alias->checkState() == Qt::Checked, alias->text(), value->checkState() == Qt::Checked,
            value->text()};
}

void MainWindow::strings_show(const std::vector<StringRow>& rows)
{
    QTableWidget* const table = ui->tableWidget_strings;
    const int count = qMax(int(rows.size()), FEWEST_ROWS);
    while (table->rowCount() < count)
        row_insert(table->rowCount());
    while (table->rowCount() > count)
        table->removeRow(table->rowCount() - 1);
    for (int row = 0; row < count; ++row)
        row_show(row, row < int(rows.size()) ? rows[std::size_t(row)] : StringRow());
    table->resizeColumnToContents(OPERATION_COLUMN);
    table->resizeColumnToContents(ALIAS_COLUMN);
    table->resizeRowsToContents();
}

std::vector<StringRow> MainWindow::strings() const
{
    std::vector<StringRow> rows;
    for (int row = 0; row < ui->tableWidget_strings->rowCount(); ++row)
        rows.push_back(row_shown(row));
    return rows;
}

void MainWindow::row_load(int row)
{
    const StringRow loaded = row_shown(row);
    if (loaded.value.isEmpty())
        return;
    hex_mode_send = loaded.is_hex;
    ui->checkBox_hex_mode->setChecked(hex_mode_send);
    ui->plainTextEdit_send->setPlainText(loaded.value);
}

void MainWindow::on_tableWidget_strings_cellClicked(int row, int column)
{
    if (column != OPERATION_COLUMN || row_shown(row).value.isEmpty())
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

void MainWindow::strings_send_in_turn()
{
    if (open_notes > 0)
        return;
    const int row =
        next_in_turn(turn_cursor, ui->tableWidget_strings->rowCount(),
                     [this](int each) { return row_shown(each).can_be_sent_in_turn(); });
    if (row < 0) {
        ui->checkBox_send_in_turn->setChecked(false);
        msgbox(tr("No strings found in list"));
        return;
    }
    row_load(row);
    if (!send_data_valid || !port_write(send_data) || send_count_reached())
        ui->checkBox_send_in_turn->setChecked(false);
}

void MainWindow::on_pushButton_extend_clicked()
{
    const bool show = !ui->dockWidget_extend->isVisible();
    ui->dockWidget_extend->setVisible(show);
    ui->pushButton_extend->setText(show ? tr("&hide>>") : tr("&extend<<"));
}
