#include "terminal/mainwindow.h"

#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QProgressBar>

namespace {

// Qt's own texts: standard buttons, file dialogs, context menus. Without its catalogue
// they stay in English. A translator installed later is asked first, so this one comes before ours.
std::unique_ptr<QTranslator> qt_translator_install(const QString& language)
{
    auto translator = std::make_unique<QTranslator>();
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
    if (!translator->load("qtbase_" + language, folder))
        return nullptr;
    QCoreApplication::installTranslator(translator.get());
    return translator;
}

} // namespace

void MainWindow::language_load(QString language)
{
    const QString name = "tarnwick_" + language;
    if (!translator.load(name, ":/language")) {
        accessible_names_set();
        msgbox(tr("loading language %1 failed").arg(name));
        return;
    }
    qt_translator = qt_translator_install(language);
    QCoreApplication::installTranslator(&translator);
    ui->retranslateUi(this);
    accessible_names_set();
}

// What a screen reader says of the widgets that have no text.
void MainWindow::accessible_names_set()
{
    ui->plainTextEdit_recv->setAccessibleName(tr("receive area"));
    ui->plainTextEdit_send->setAccessibleName(tr("send area"));
    ui->spinBox_auto_clr_threshold->setAccessibleName(tr("lines that auto clear keeps"));
    ui->spinBox_frame_interval->setAccessibleName(tr("silence between two frames"));
    ui->lineEdit_save2file_path->setAccessibleName(tr("file to save to"));
    ui->spinBox_send_interval->setAccessibleName(tr("interval of auto send"));
    ui->spinBox_send_count->setAccessibleName(tr("how often to send, 0 for without end"));
    ui->tableWidget_strings->setAccessibleName(tr("prepared strings"));
    ui->spinBox_send_in_turn_interval->setAccessibleName(tr("interval of send in turn"));
    ui->pushButton_table_row_up->setAccessibleName(tr("move the row up"));
    ui->pushButton_table_row_down->setAccessibleName(tr("move the row down"));
    ui->pushButton_table_row_add->setAccessibleName(tr("add a row"));
    ui->pushButton_table_row_del->setAccessibleName(tr("delete the row"));
    ui->dockWidget->setAccessibleName(tr("control panel"));
    ui->dockWidget_extend->setAccessibleName(tr("panel of prepared strings"));
    file_progress->setAccessibleName(tr("progress of the file that is sent"));
}
