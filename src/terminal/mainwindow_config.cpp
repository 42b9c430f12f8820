#include "terminal/mainwindow.h"

#include "linkcfg/inifile.h"
#include "terminal/settingkeys.h"
#include "terminal/stringcolumns.h"
#include "ui_mainwindow.h"

#include <QDir>
#include <QFileDialog>
#include <limits>

static constexpr int STATE_VERSION = 0;
static constexpr int FEWEST_ROWS = 8;
static constexpr int NO_ROW = std::numeric_limits<int>::max() - 1; // that no file can hold

// A file may claim any number of rows. Beyond this many, only those that hold something are
// believed.
static constexpr int CREDIBLE_ROWS = 100000;

void MainWindow::config_load()
{
    IniFile settings(cfg_file);
    settings.beginGroup("serial_tool");
    options_load(settings);
    settings.endGroup();
    strings_load(settings);
    settings.beginGroup("window");
    restoreGeometry(GEOMETRY.read(settings));
    restoreState(STATE.read(settings), STATE_VERSION);
    // A floating panel is gone before the state is stored at the end, and nothing brings it back.
    // Shown ahead of its window it would lie below it.
    ui->dockWidget->setVisible(!ui->dockWidget->isFloating());
    QMetaObject::invokeMethod(ui->dockWidget, &QWidget::show, Qt::QueuedConnection);
    settings.endGroup();
}

void MainWindow::options_load(QSettings& settings)
{
    ui->checkBox_display_tx->setChecked(display_tx = DISPLAY_TX.read(settings));
    ui->checkBox_display_time->setChecked(display_time = DISPLAY_TIME.read(settings));
    ui->checkBox_frame_mode->setChecked(frame_mode = FRAME_MODE.read(settings));
    ui->spinBox_frame_interval->setValue(frame_interval = FRAME_INTERVAL.read(settings));
    ui->checkBox_hex_display->setChecked(hex_display = HEX_DISPLAY.read(settings));
    ui->checkBox_window_auto_clr->setChecked(AUTO_CLR.read(settings));
    ui->spinBox_auto_clr_threshold->setValue(AUTO_CLR_THRESHOLD.read(settings));
    ui->checkBox_hex_mode->setChecked(hex_mode_send = HEX_MODE_SEND.read(settings));
    on_checkBox_hex_mode_stateChanged(ui->checkBox_hex_mode->checkState());
    ui->spinBox_send_interval->setValue(SEND_INTERVAL.read(settings));
    ui->checkBox_raw_text->setChecked(RAW_TEXT.read(settings));
    ui->spinBox_send_in_turn_interval->setValue(SEND_IN_TURN_INTERVAL.read(settings));
    ui->spinBox_send_count->setValue(SEND_COUNT.read(settings));
    ui->lineEdit_save2file_path->setText(SAVE2FILE.read(settings));
}

// The last row of the array that has a key, counted from 1.
static int last_row_with_keys(const QSettings& array_group)
{
    int last = 0;
    for (const QString& row : array_group.childGroups())
        last = qMax(last, row.toInt());
    return last;
}

static int rows_stored(QSettings& settings)
{
    int rows = settings.beginReadArray(STRINGS);
    settings.endArray();
    if (rows > CREDIBLE_ROWS) {
        settings.beginGroup(STRINGS);
        rows = qMin(CREDIBLE_ROWS, last_row_with_keys(settings));
        settings.endGroup();
    }
    return rows;
}

static Qt::CheckState check_state(bool checked)
{
    return checked ? Qt::Checked : Qt::Unchecked;
}

void MainWindow::strings_load(QSettings& settings)
{
    QTableWidget* const table = ui->tableWidget_strings;
    const int stored = rows_stored(settings);
    const int rows = qMax(stored, FEWEST_ROWS);
    while (table->rowCount() < rows)
        row_insert(table->rowCount());
    while (table->rowCount() > rows)
        table->removeRow(table->rowCount() - 1);

    settings.beginReadArray(STRINGS);
    for (int row = 0; row < rows; ++row) {
        // A row after the array's end is blank, whatever an older array has left there.
        settings.setArrayIndex(row < stored ? row : NO_ROW);
        QTableWidgetItem* const alias = table->item(row, ALIAS_COLUMN);
        QTableWidgetItem* const value = table->item(row, VALUE_COLUMN);
        alias->setCheckState(check_state(IN_TURN.read(settings)));
        alias->setText(ALIAS.read(settings));
        value->setCheckState(check_state(IS_HEX.read(settings)));
        value->setText(VALUE.read(settings));
    }
    settings.endArray();
    table->resizeColumnToContents(OPERATION_COLUMN);
    table->resizeColumnToContents(ALIAS_COLUMN);
    table->resizeRowsToContents();
}

void MainWindow::config_store()
{
    // All opened before the first change, as opening one writes what the others have changed in its
    // file. So each file is written once, and no kill can leave one without its list.
    IniFile root(ROOT_FILE);
    IniFile current(cfg_file);
    IniFile list(cfg_file);

    root.beginGroup("global");
    CFG_FILE.write_if_changed(root, cfg_file);
    root.endGroup();
    current.beginGroup("global");
    LANGUAGE.write_if_changed(current, language);
    current.endGroup();
    current.beginGroup("serial_tool");
    options_store(current);
    current.endGroup();
    current.beginGroup("window");
    GEOMETRY.write_if_changed(current, saveGeometry());
    STATE.write_if_changed(current, saveState(STATE_VERSION));
    current.endGroup();

    if (!strings_changed(current))
        return;
    current.setFallbacksEnabled(false);
    current.beginGroup(STRINGS);
    current.remove("");
    current.endGroup();
    strings_store(list);
}

void MainWindow::options_store(QSettings& settings)
{
    DISPLAY_TX.write_if_changed(settings, ui->checkBox_display_tx->isChecked());
    DISPLAY_TIME.write_if_changed(settings, ui->checkBox_display_time->isChecked());
    FRAME_MODE.write_if_changed(settings, ui->checkBox_frame_mode->isChecked());
    FRAME_INTERVAL.write_if_changed(settings, ui->spinBox_frame_interval->value());
    HEX_DISPLAY.write_if_changed(settings, ui->checkBox_hex_display->isChecked());
    AUTO_CLR.write_if_changed(settings, ui->checkBox_window_auto_clr->isChecked());
    AUTO_CLR_THRESHOLD.write_if_changed(settings, ui->spinBox_auto_clr_threshold->value());
    HEX_MODE_SEND.write_if_changed(settings, ui->checkBox_hex_mode->isChecked());
    // In send-file mode the send area holds a file name, which is no text to keep.
    if (!ui->checkBox_send_file->isChecked())
        send_text_setting(ui->checkBox_hex_mode->isChecked())
            .write_if_changed(settings, ui->plainTextEdit_send->toPlainText());
    SEND_INTERVAL.write_if_changed(settings, ui->spinBox_send_interval->value());
    SEND_COUNT.write_if_changed(settings, ui->spinBox_send_count->value());
    RAW_TEXT.write_if_changed(settings, ui->checkBox_raw_text->isChecked());
    SEND_IN_TURN_INTERVAL.write_if_changed(settings, ui->spinBox_send_in_turn_interval->value());
    SAVE2FILE.write_if_changed(settings, ui->lineEdit_save2file_path->text());
}

bool MainWindow::strings_changed(QSettings& settings) const
{
    const QTableWidget* const table = ui->tableWidget_strings;
    const int rows = table->rowCount();
    bool changed = settings.beginReadArray(STRINGS) != rows;
    for (int row = 0; row < rows && !changed; ++row) {
        settings.setArrayIndex(row);
        const QTableWidgetItem* const alias = table->item(row, ALIAS_COLUMN);
        const QTableWidgetItem* const value = table->item(row, VALUE_COLUMN);
        changed = IN_TURN.read(settings) != (alias->checkState() == Qt::Checked) ||
                  ALIAS.read(settings) != alias->text() ||
                  IS_HEX.read(settings) != (value->checkState() == Qt::Checked) ||
                  VALUE.read(settings) != value->text();
    }
    settings.endArray();
    return changed;
}

void MainWindow::strings_store(QSettings& settings)
{
    const QTableWidget* const table = ui->tableWidget_strings;
    settings.beginWriteArray(STRINGS, -1);
    for (int row = 0; row < table->rowCount(); ++row) {
        settings.setArrayIndex(row);
        const QTableWidgetItem* const alias = table->item(row, ALIAS_COLUMN);
        const QTableWidgetItem* const value = table->item(row, VALUE_COLUMN);
        if (alias->checkState() == Qt::Checked)
            IN_TURN.write(settings, true);
        if (!alias->text().isEmpty())
            ALIAS.write(settings, alias->text());
        if (value->checkState() == Qt::Checked)
            IS_HEX.write(settings, true);
        if (!value->text().isEmpty())
            VALUE.write(settings, value->text());
    }
    settings.endArray();
}

void MainWindow::on_action_load_triggered()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Chose configration file to load"),
                                                      cfg_file, tr("Ini files (*.ini)"));
    if (path.isEmpty())
        return;
    cfg_file = QDir("./").relativeFilePath(path);
    config_load();
    title_update();
}

void MainWindow::on_action_store_triggered()
{
    // A menu leaves the editor of a cell open; without the focus it puts its text into the cell.
    QTableWidget* const table = ui->tableWidget_strings;
    if (table->isAncestorOf(focusWidget()))
        table->setFocus();
    config_store();
}

void MainWindow::on_action_store_as_triggered()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Chose configration file to save"),
                                                      cfg_file, tr("Ini files (*.ini)"));
    if (path.isEmpty())
        return;
    cfg_file = path;
    config_store();
    title_update();
}
