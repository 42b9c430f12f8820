#include "terminal/mainwindow.h"

#include "linkcfg/inifile.h"
#include "serialport/portdrain.h"
#include "terminal/fileprogress.h"
#include "terminal/filesend.h"
#include "terminal/pacedlabel.h"
#include "terminal/settingkeys.h"
#include "ui_mainwindow.h"

#include <QMessageBox>
#include <QScopedValueRollback>

namespace {

// At the first start. The panel would take its preferred height, and leave little to received data.
constexpr int CONTROL_PANEL_HEIGHT = 210;

constexpr char WEB_ADDRESS[] = "www.corvane.example";

// Shows a floating panel again when the desktop closes it alone: nothing else would. The close
// isn't refused, as that would keep the application from ending.
class PanelReturn : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const panel = static_cast<QWidget*>(watched);
        const auto show = [panel] { panel->setVisible(panel->parentWidget()->isVisible()); };
        if (event->type() == QEvent::Close)
            QMetaObject::invokeMethod(panel, show, Qt::QueuedConnection);
        return false;
    }
};

// Names of files and ports are part of the texts, and none of them is markup.
void plain_box(QMessageBox::Icon icon, const QString& title, const QString& text, QWidget* parent)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace

MainWindow::MainWindow(QWidget* parent, std::function<QTime()> time_of_day)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui_MainWindow>())
    , clock(std::move(time_of_day))
{
    ui->setupUi(this);
    status_bar_fill();
    shortcuts_create();
    ui->dockWidget->installEventFilter(new PanelReturn(this));

    send_timer = new QTimer(this);
    send_timer->setTimerType(Qt::PreciseTimer);
    frame_clock = clock();

    IniFile root(ROOT_FILE);
    root.beginGroup("global");
    cfg_file = CFG_FILE.read(root);
    IniFile current(cfg_file);
    current.beginGroup("global");
    language = LANGUAGE.read(current);

    language_load(language);
    resizeDocks({ui->dockWidget}, {CONTROL_PANEL_HEIGHT}, Qt::Vertical);
    config_load();
    ui->dockWidget_extend->setVisible(false);
    title_update();
    ui->plainTextEdit_send->setFocus();
}

MainWindow::~MainWindow()
{
    config_store();
    save_end();
    port_close();
    PortDrain::finish_all(); // no event loop does it any more
}

void MainWindow::status_bar_fill()
{
    label_port = new QLabel("COMx");
    label_cnt = new PacedLabel("CNT: 0");
    label_rx = new PacedLabel("RX: 0");
    label_tx = new PacedLabel("TX: 0");
    auto* const web_address = new QLabel(WEB_ADDRESS);
    web_address->setTextFormat(Qt::PlainText);

    // Here from the start: a bar that gains or loses a widget shows again, below its message, what
    // the message has hidden.
    file_progress = new FileProgress;
    file_progress->setRange(0, 1000);
    file_progress->setMaximumHeight(web_address->sizeHint().height());
    file_progress->hide();

    ui->statusBar->addWidget(web_address);
    ui->statusBar->addPermanentWidget(file_progress);
    for (QLabel* label : {label_port, label_cnt, label_tx, label_rx}) {
        label->setTextFormat(Qt::PlainText);
        ui->statusBar->addPermanentWidget(label);
    }
}

void MainWindow::title_update()
{
    setWindowTitle(QString("Tarnwick [%1]").arg(cfg_file.section('/', -1, -1)));
}

void MainWindow::msgbox(QString msg)
{
    const QScopedValueRollback<int> one_more(open_notes, open_notes + 1);
    plain_box(QMessageBox::Information, tr("note"), msg, this);
}

void MainWindow::information_box(const QString& text)
{
    plain_box(QMessageBox::Information, QString(), text, this);
}

void MainWindow::warning_box(const QString& title, const QString& text)
{
    plain_box(QMessageBox::Warning, title, text, this);
}

void MainWindow::rx_count_show(int n)
{
    label_rx->setText(QString("RX: %1").arg(n));
}

void MainWindow::tx_count_show(int n)
{
    label_tx->setText(QString("TX: %1").arg(n));
}

void MainWindow::send_count_show(int n)
{
    label_cnt->setText(QString("CNT: %1").arg(n));
}

void MainWindow::on_action_about_triggered()
{
    QMessageBox::about(this, "Tarnwick", tr("Corvane Serial Tool\n") + "V1.14 build Jan 11 2018");
}
