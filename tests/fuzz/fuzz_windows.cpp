// Any bytes as the file of a window: what the window makes of them it stores, and shows the same
// from then on.
#include "fuzzing.h"
#include "linkcfg/qlinkcfgdlg.h"
#include "linkcfg/qtcpipcfgwidget.h"
#include "sandbox.h"
#include "terminal/mainwindow.h"
#include "terminal/settingkeys.h"

#include <QApplication>
#include <QMetaProperty>
#include <QTableWidget>
#include <QTimer>

namespace {

constexpr char FILE_NAME[] = "settings.ini";
constexpr int MOST_ROWS = 200; // more only take time

// In a directory of its own, with message boxes closed as soon as they show.
void application_start()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QApplication application(argc, argv);
    static const Sandbox sandbox;
    QSettings(ROOT_FILE, QSettings::IniFormat).setValue("global/cfg_file", FILE_NAME);
    static QTimer timer;
    timer.callOnTimeout(QApplication::closeAllWindows);
    timer.start(0);
}

// What is in the fields of a window, sorted, as a window that is raised changes its place.
QStringList shown(const QWidget& window)
{
    QStringList texts;
    for (const QWidget* field : window.findChildren<QWidget*>())
        texts += field->objectName() + field->metaObject()->userProperty().read(field).toString();
    for (const auto* table : window.findChildren<QTableWidget*>())
        for (const QTableWidgetItem* item : table->findItems("*", Qt::MatchWildcard))
            texts += QString("%1,%2: %3 %4")
                         .arg(item->row())
                         .arg(item->column())
                         .arg(item->text())
                         .arg(int(item->checkState()));
    texts.sort();
    return texts;
}

// `show` opens a window and closes it, so that it stores.
template <typename Show> void check(const QByteArray& content, const Show& show)
{
    static const bool started = (application_start(), true);
    file_write(FILE_NAME, content);
    if (QSettings(FILE_NAME, QSettings::IniFormat).value("strings/size").toInt() > MOST_ROWS)
        return;
    const QStringList first = show();
    require(started && show() == first);
}

void window(const QByteArray& content)
{
    check(content, [] { return shown(MainWindow()); });
}

void link(const QByteArray& content)
{
    check(content, [] {
        const QLinkCfgDlg dialog(nullptr, FILE_NAME);
        tcpip_cfg cfg;
        dialog.tcpip_widget()->settings_get(&cfg);
        return shown(dialog);
    });
}

} // namespace

const QMap<QByteArray, Parser> PARSERS = {{"window", window}, {"link", link}};
