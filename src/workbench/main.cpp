// tarnwick-workbench: the device tools in a window.
#include "workbench/workbenchwindow.h"

#include <QApplication>
#include <QStandardPaths>

int main(int argc, char** argv)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    // As Qt 6 does unasked.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
    QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName("tarnwick-workbench");
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    WorkbenchWindow window(folder + "/tarnwick/workbench.ini");
    window.show();
    return QApplication::exec();
}
