#include "mainwindow.h"

#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QLibraryInfo>

// The toolkit's own texts: standard buttons, file dialogs, context menus. Without its catalogue
// they stay in English. A translator installed later is asked first, so this one comes before ours.
static std::unique_ptr<QTranslator> toolkit_translator_install(const QString& language)
{
    auto toolkit = std::make_unique<QTranslator>();
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
    if (!toolkit->load("qtbase_" + language, folder))
        return nullptr;
    QCoreApplication::installTranslator(toolkit.get());
    return toolkit;
}

void MainWindow::language_load(QString language)
{
    const QString name = "tarnwick_" + language;
    if (!translator.load(name, ":/language")) {
        msgbox(tr("loading language %1 failed").arg(name));
        return;
    }
    toolkit_translator = toolkit_translator_install(language);
    QCoreApplication::installTranslator(&translator);
    ui->retranslateUi(this);
}
