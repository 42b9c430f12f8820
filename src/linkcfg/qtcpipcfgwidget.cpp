#include "linkcfg/qtcpipcfgwidget.h"

#include "linkcfg/inifile.h"
#include "linkcfg/option.h"
#include "linkcfg/setting.h"
#include "ui_qtcpipcfgwidget.h"

#include <QByteArray>
#include <algorithm>
#include <iterator>

namespace {

const QString GROUP = QStringLiteral("tcpip_cfg");
const Setting<int> IP_VERSION = {"ip_version", TCPIP_V4};
const Setting<int> PROTOCOL = {"protocol", TCPIP_TCP_CLIENT};
const Setting<QString> IPV4_ADDR = {"ipv4_addr", "192.168.100.101"};
const Setting<QString> IPV6_ADDR = {"ipv6_addr", "fe80::0001%1"};
const Setting<int> REMOTE_PORT = {"remote_port", 8080};
const Setting<int> LOCAL_PORT = {"local_port", 8081};
const Setting<bool> LOCAL_PORT_RANDOM = {"local_port_random", true};
const Setting<int> TIMEOUT = {"timeout", 500};

} // namespace

QTcpipCfgWidget::QTcpipCfgWidget(QWidget* parent, const QString& filename)
    : QWidget(parent)
    , ui(std::make_unique<Ui::QTcpipCfgWidget>())
    , filename(filename)
{
    ui->setupUi(this);
    // For a screen reader.
    ui->label_5->setBuddy(ui->comboBox_ip_version);
    ui->label->setBuddy(ui->comboBox_protocol);
    ui->label_2->setBuddy(ui->lineEdit_ipv4_addr);
    ui->label_4->setBuddy(ui->lineEdit_ipv6_addr);
    ui->label_3->setBuddy(ui->spinBox_remote_port);
    ui->label_6->setBuddy(ui->spinBox_local_port);
    ui->label_7->setBuddy(ui->spinBox_timeot);
    IniFile settings(filename);
    settings.beginGroup(GROUP);
    for (const Option& option : options())
        option.load(settings);
}

QTcpipCfgWidget::~QTcpipCfgWidget()
{
    IniFile settings(filename);
    settings.beginGroup(GROUP);
    for (const Option& option : options())
        option.store(settings);
}

int QTcpipCfgWidget::ip_version() const
{
    return ui->comboBox_ip_version->currentIndex();
}

int QTcpipCfgWidget::protocol() const
{
    return ui->comboBox_protocol->currentIndex();
}

QString QTcpipCfgWidget::ipv4_addr() const
{
    return ui->lineEdit_ipv4_addr->text();
}

QString QTcpipCfgWidget::ipv6_addr() const
{
    return ui->lineEdit_ipv6_addr->text();
}

int QTcpipCfgWidget::remote_port() const
{
    return ui->spinBox_remote_port->value();
}

int QTcpipCfgWidget::local_port() const
{
    return ui->spinBox_local_port->value();
}

bool QTcpipCfgWidget::local_port_random() const
{
    return ui->checkBox_random_local_port->isChecked();
}

int QTcpipCfgWidget::timeout() const
{
    return ui->spinBox_timeot->value();
}

void QTcpipCfgWidget::settings_get(tcpip_cfg* cfg) const
{
    cfg->ip_version = ip_version();
    cfg->protocol = protocol();
    cfg->remote_port = remote_port();
    cfg->local_port = local_port();
    cfg->local_port_random = local_port_random();
    cfg->timeout = timeout();

    const QString text = cfg->ip_version == TCPIP_V4 ? ipv4_addr() : ipv6_addr();
    const QByteArray addr = text.toLatin1().left(int(sizeof cfg->addr) - 1);
    std::fill(std::begin(cfg->addr), std::end(cfg->addr), '\0');
    std::copy(addr.cbegin(), addr.cend(), cfg->addr);
}

void QTcpipCfgWidget::settings_show(const tcpip_cfg& cfg)
{
    const QString address = QString::fromLatin1(cfg.addr);
    const bool v6 = address.contains(':');
    if (!address.isEmpty()) {
        ui->comboBox_ip_version->setCurrentIndex(v6 ? TCPIP_V6 : TCPIP_V4);
        (v6 ? ui->lineEdit_ipv6_addr : ui->lineEdit_ipv4_addr)->setText(address);
    }
    ui->comboBox_protocol->setCurrentIndex(cfg.protocol);
    ui->spinBox_remote_port->setValue(cfg.remote_port);
    ui->spinBox_timeot->setValue(cfg.timeout);
}

void QTcpipCfgWidget::on_comboBox_ip_version_currentIndexChanged(int index)
{
    ui->lineEdit_ipv4_addr->setEnabled(index != TCPIP_V6);
    ui->lineEdit_ipv6_addr->setEnabled(index == TCPIP_V6);
}

void QTcpipCfgWidget::on_checkBox_random_local_port_stateChanged(int arg1)
{
    ui->spinBox_local_port->setEnabled(arg1 == Qt::Unchecked);
}

// In the order in which a new file gets their keys.
std::vector<Option> QTcpipCfgWidget::options() const
{
    return {
        {IP_VERSION, ui->comboBox_ip_version},
        {PROTOCOL, ui->comboBox_protocol},
        {IPV4_ADDR, ui->lineEdit_ipv4_addr},
        {IPV6_ADDR, ui->lineEdit_ipv6_addr},
        {REMOTE_PORT, ui->spinBox_remote_port},
        {LOCAL_PORT, ui->spinBox_local_port},
        {LOCAL_PORT_RANDOM, ui->checkBox_random_local_port},
        {TIMEOUT, ui->spinBox_timeot},
    };
}
