#include "mainwindow.h"

#include "ui_mainwindow.h"

#include <QCoreApplication>

void MainWindow::language_load(QString language)
{
    const QString name = "tarnwick_" + language;
    if (!translator.load(name, ":/language")) {
        msgbox(tr("loading language %1 failed").arg(name));
        return;
    }
    QCoreApplication::installTranslator(&translator);
    ui->retranslateUi(this);
}
