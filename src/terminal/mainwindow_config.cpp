#include "mainwindow.h"

#include "inistring.h"
#include "ui_mainwindow.h"

#include <QDir>
#include <QFileDialog>

static const char ROOT_FILE[] = "tarnwick.ini";
static const char DEFAULT_LANGUAGE[] = "zh_CN";
static constexpr int STATE_VERSION = 0;
static constexpr int FEWEST_ROWS = 8;

// A file may claim any number of rows. Beyond this many, only those that hold something are
// believed.
static constexpr int CREDIBLE_ROWS = 100000;

enum Column { OPERATION, ALIAS, VALUE };

template <typename Value>
static void store(QSettings& settings, const QString& key, const Value& value, const Value& absent)
{
    if (settings.value(key, absent).template value<Value>() != value)
        settings.setValue(key, value);
}

static void store(QSettings& settings, const QString& key, const QString& value,
                  const QString& absent)
{
    if (ini_string(settings, key, absent) != value)
        settings.setValue(key, value);
}

void MainWindow::config_load()
{
    QSettings settings(cfg_file, QSettings::IniFormat);
    settings.beginGroup("serial_tool");
    options_load(settings);
    settings.endGroup();
    strings_load(settings);
    settings.beginGroup("window");
    restoreGeometry(settings.value("geometry").toByteArray());
    restoreState(settings.value("state").toByteArray(), STATE_VERSION);
    settings.endGroup();
}

void MainWindow::options_load(QSettings& settings)
{
    const auto flag = [&](const char* key) { return settings.value(key, false).toBool(); };
    const auto number = [&](const char* key, int absent) {
        return settings.value(key, absent).toInt();
    };

    ui->checkBox_display_tx->setChecked(display_tx = flag("display_tx"));
    ui->checkBox_display_time->setChecked(display_time = flag("display_time"));
    ui->checkBox_frame_mode->setChecked(frame_mode = flag("frame_mode"));
    ui->spinBox_frame_interval->setValue(frame_interval = number("frame_interval", 5));
    ui->checkBox_hex_display->setChecked(hex_display = flag("hex_display"));
    ui->checkBox_window_auto_clr->setChecked(flag("auto_clr"));
    ui->spinBox_auto_clr_threshold->setValue(number("auto_clr_threshold", 100));
    ui->checkBox_hex_mode->setChecked(hex_mode_send = flag("hex_mode_send"));
    on_checkBox_hex_mode_stateChanged(ui->checkBox_hex_mode->checkState());
    ui->spinBox_send_interval->setValue(number("send_interval", 10));
    ui->checkBox_raw_text->setChecked(flag("raw_text"));
    ui->spinBox_send_in_turn_interval->setValue(number("send_in_turn_interval", 20));
    ui->spinBox_send_count->setValue(number("send_count", 0));
    ui->lineEdit_save2file_path->setText(ini_string(settings, "save2file"));
}

// The last row of the array that has a key, counted from 1.
static int last_row_with_keys(const QSettings& array_group)
{
    int last = 0;
    for (const QString& row : array_group.childGroups())
        last = qMax(last, row.toInt());
    return last;
}

static int rows_wanted(QSettings& settings)
{
    int rows = settings.beginReadArray("strings");
    settings.endArray();
    if (rows > CREDIBLE_ROWS) {
        settings.beginGroup("strings");
        rows = qMin(CREDIBLE_ROWS, last_row_with_keys(settings));
        settings.endGroup();
    }
    return qMax(rows, FEWEST_ROWS);
}

void MainWindow::strings_load(QSettings& settings)
{
    QTableWidget* const table = ui->tableWidget_strings;
    const int rows = rows_wanted(settings);
    while (table->rowCount() < rows)
        row_insert(table->rowCount());
    while (table->rowCount() > rows)
        table->removeRow(table->rowCount() - 1);

    settings.beginReadArray("strings");
    for (int row = 0; row < rows; ++row) {
        settings.setArrayIndex(row);
        const auto mark = [&](const char* key) {
            return settings.value(key, false).toBool() ? Qt::Checked : Qt::Unchecked;
        };
        table->item(row, ALIAS)->setCheckState(mark("in_turn"));
        table->item(row, ALIAS)->setText(ini_string(settings, "alias"));
        table->item(row, VALUE)->setCheckState(mark("ishex"));
        table->item(row, VALUE)->setText(ini_string(settings, "value"));
    }
    settings.endArray();
    table->resizeColumnToContents(OPERATION);
    table->resizeColumnToContents(ALIAS);
    table->resizeRowsToContents();
}

void MainWindow::config_store()
{
    QSettings root(ROOT_FILE, QSettings::IniFormat);
    root.beginGroup("global");
    store(root, "cfg_file", cfg_file, QString(ROOT_FILE));
    root.endGroup();

    QSettings current(cfg_file, QSettings::IniFormat);
    current.beginGroup("global");
    store(current, "language", language, QString(DEFAULT_LANGUAGE));
    current.endGroup();
    current.beginGroup("serial_tool");
    options_store(current);
    current.endGroup();
    current.beginGroup("window");
    store(current, "geometry", saveGeometry(), QByteArray());
    store(current, "state", saveState(STATE_VERSION), QByteArray());
    current.endGroup();

    if (!strings_changed(current))
        return;
    current.setFallbacksEnabled(false);
    current.beginGroup("strings");
    current.remove("");
    current.endGroup();
    QSettings list(cfg_file, QSettings::IniFormat);
    strings_store(list);
}

void MainWindow::options_store(QSettings& settings)
{
    store(settings, "display_tx", ui->checkBox_display_tx->isChecked(), false);
    store(settings, "display_time", ui->checkBox_display_time->isChecked(), false);
    store(settings, "frame_mode", ui->checkBox_frame_mode->isChecked(), false);
    store(settings, "frame_interval", ui->spinBox_frame_interval->value(), 5);
    store(settings, "hex_display", ui->checkBox_hex_display->isChecked(), false);
    store(settings, "auto_clr", ui->checkBox_window_auto_clr->isChecked(), false);
    store(settings, "auto_clr_threshold", ui->spinBox_auto_clr_threshold->value(), 100);
    store(settings, "hex_mode_send", ui->checkBox_hex_mode->isChecked(), false);
    // In send-file mode the send area holds a file name, which is no text to keep.
    if (!ui->checkBox_send_file->isChecked())
        store(settings, ui->checkBox_hex_mode->isChecked() ? "hex" : "ascii",
              ui->plainTextEdit_send->toPlainText(), QString());
    store(settings, "send_interval", ui->spinBox_send_interval->value(), 10);
    store(settings, "send_count", ui->spinBox_send_count->value(), 0);
    store(settings, "raw_text", ui->checkBox_raw_text->isChecked(), false);
    store(settings, "send_in_turn_interval", ui->spinBox_send_in_turn_interval->value(), 20);
    store(settings, "save2file", ui->lineEdit_save2file_path->text(), QString());
}

bool MainWindow::strings_changed(QSettings& settings) const
{
    const QTableWidget* const table = ui->tableWidget_strings;
    const int rows = table->rowCount();
    bool changed = settings.beginReadArray("strings") != rows;
    for (int row = 0; row < rows && !changed; ++row) {
        settings.setArrayIndex(row);
        const QTableWidgetItem* const alias = table->item(row, ALIAS);
        const QTableWidgetItem* const value = table->item(row, VALUE);
        changed =
            settings.value("in_turn", false).toBool() != (alias->checkState() == Qt::Checked) ||
            ini_string(settings, "alias") != alias->text() ||
            settings.value("ishex", false).toBool() != (value->checkState() == Qt::Checked) ||
            ini_string(settings, "value") != value->text();
    }
    settings.endArray();
    return changed;
}

void MainWindow::strings_store(QSettings& settings)
{
    const QTableWidget* const table = ui->tableWidget_strings;
    settings.beginWriteArray("strings", -1);
    for (int row = 0; row < table->rowCount(); ++row) {
        settings.setArrayIndex(row);
        const QTableWidgetItem* const alias = table->item(row, ALIAS);
        const QTableWidgetItem* const value = table->item(row, VALUE);
        if (alias->checkState() == Qt::Checked)
            settings.setValue("in_turn", true);
        if (!alias->text().isEmpty())
            settings.setValue("alias", alias->text());
        if (value->checkState() == Qt::Checked)
            settings.setValue("ishex", true);
        if (!value->text().isEmpty())
            settings.setValue("value", value->text());
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
