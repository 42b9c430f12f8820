#include "terminal/mainwindow.h"

#include "linkcfg/inifile.h"
#include "linkcfg/option.h"
#include "terminal/settingkeys.h"
#include "ui_mainwindow.h"

#include <QDir>
#include <QFileDialog>

namespace {
constexpr int STATE_VERSION = 0;
} // namespace

void MainWindow::config_load()
{
    IniFile settings(cfg_file);
    settings.beginGroup("serial_tool");
    for (const Option& option : options())
        option.load(settings);
    settings.endGroup();
    strings_show(string_rows_read(settings));
    settings.beginGroup("window");
    restoreGeometry(GEOMETRY.read(settings));
    restoreState(STATE.read(settings), STATE_VERSION);
    // A floating panel is gone before the state is stored at the end, and nothing brings it back.
    // Shown ahead of its window it would lie below it.
    ui->dockWidget->setVisible(!ui->dockWidget->isFloating());
    QMetaObject::invokeMethod(ui->dockWidget, &QWidget::show, Qt::QueuedConnection);
    settings.endGroup();
}

// In the order in which a new file gets their keys.
std::vector<Option> MainWindow::options()
{
    const auto send_text_load = [this] {
        on_checkBox_hex_mode_stateChanged(ui->checkBox_hex_mode->checkState());
    };
    return {
        {DISPLAY_TX, ui->checkBox_display_tx, &display_tx},
        {DISPLAY_TIME, ui->checkBox_display_time, &display_time},
        {FRAME_MODE, ui->checkBox_frame_mode, &frame_mode},
        {FRAME_INTERVAL, ui->spinBox_frame_interval, &frame_interval},
        {HEX_DISPLAY, ui->checkBox_hex_display, &hex_display},
        {AUTO_CLR, ui->checkBox_window_auto_clr},
        {AUTO_CLR_THRESHOLD, ui->spinBox_auto_clr_threshold},
        {HEX_MODE_SEND, ui->checkBox_hex_mode, &hex_mode_send},
        {send_text_load, [this](QSettings& settings) { send_text_store(settings); }},
        {SEND_INTERVAL, ui->spinBox_send_interval},
        {SEND_COUNT, ui->spinBox_send_count},
        {RAW_TEXT, ui->checkBox_raw_text}, // after the send text, which is parsed as raw till then
        {SEND_IN_TURN_INTERVAL, ui->spinBox_send_in_turn_interval},
        {SAVE2FILE, ui->lineEdit_save2file_path},
    };
}

void MainWindow::send_text_store(QSettings& settings) const
{
    // In send-file mode the send area holds a file name, which is no text to keep.
    if (!ui->checkBox_send_file->isChecked())
        send_text_setting(ui->checkBox_hex_mode->isChecked())
            .write_if_changed(settings, ui->plainTextEdit_send->toPlainText());
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
    for (const Option& option : options())
        option.store(current);
    current.endGroup();
    current.beginGroup("window");
    GEOMETRY.write_if_changed(current, saveGeometry());
    STATE.write_if_changed(current, saveState(STATE_VERSION));
    current.endGroup();

    const std::vector<StringRow> rows = strings();
    if (string_rows_are_stored(current, rows))
        return;
    current.setFallbacksEnabled(false);
    current.beginGroup(STRINGS);
    current.remove("");
    current.endGroup();
    string_rows_write(list, rows);
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
