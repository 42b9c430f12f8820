// Keys that work anywhere in the window, beside those of its menus and buttons.
#include "terminal/mainwindow.h"

#include "terminal/findbar.h"
#include "ui_mainwindow.h"

#include <QShortcut>

namespace {

template <typename Act> QShortcut* on_key(const char* keys, QWidget* window, Act act)
{
    auto* const shortcut = new QShortcut(QKeySequence(QString::fromLatin1(keys)), window);
    QObject::connect(shortcut, &QShortcut::activated, window, act);
    return shortcut;
}

} // namespace

void MainWindow::shortcuts_create()
{
    for (const char* const keys : {"Ctrl+Return", "Ctrl+Enter"})
        on_key(keys, this, [this] { ui->pushButton_send->click(); })->setAutoRepeat(false);

    on_key("F10", this, [this] { ui->menuBar->setActiveAction(ui->menu_file->menuAction()); });

    on_key("Ctrl+F", this, [this] { find_bar_get()->open(); });
    on_key("F3", this, [this] { find_bar_get()->find_next(); });
    on_key("Shift+F3", this, [this] { find_bar_get()->find_previous(); });

    ReceiveArea* const area = ui->plainTextEdit_recv;
    for (const char* const keys : {"Ctrl++", "Ctrl+="}) // most keyboards have the plus on Shift
        on_key(keys, this, [area] { area->font_grow(); });
    on_key("Ctrl+-", this, [area] { area->font_shrink(); });
    on_key("Ctrl+0", this, [area] { area->font_reset(); });
}

FindBar* MainWindow::find_bar_get()
{
    if (find_bar == nullptr)
        find_bar = new FindBar(ui->plainTextEdit_recv);
    return find_bar;
}
