#include "linkcfg/qserialcfgwidget.h"

#include "linkcfg/inifile.h"
#include "linkcfg/setting.h"
#include "serialport/qextserialenumerator.h"

#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <algorithm>

namespace {

const QString GROUP = QStringLiteral("serialSettings");
const Setting<int> PORT = {"port", 0};
const Setting<int> BAUD_RATE = {"baudrate", 14};
const Setting<int> CUSTOM_BAUD = {"custombaud", 1500000};
const Setting<int> DATA_BITS = {"databits", 3};
const Setting<int> PARITY = {"parity", 0};
const Setting<int> STOP_BITS = {"stopbits", 0};
const Setting<int> FLOW_CONTROL = {"flowctl", 0};
const Setting<int> TIMEOUT = {"timeout", 300}; // ms

// Files keep row numbers, so every row stays where it is, the second 256000 included.
constexpr int BAUD_RATES[] = {
    110,   300,   600,    1200,   2400,   4800,   9600,   14400,  19200,  38400,  56000,   57600,
    74880, 76800, 115200, 128000, 230400, 256000, 380400, 256000, 460800, 921600, 1000000, 1152000,
};
constexpr const char* CUSTOM = QT_TRANSLATE_NOOP("QSerialCfgWidget", "custom");
constexpr int CUSTOM_BAUD_MIN = 1;

constexpr int TIMEOUT_MIN = 1;
constexpr int TIMEOUT_MAX = 20000;

struct Choice
{
    const char* text = nullptr;
    int data = 0;
};

constexpr Choice DATA_BITS_CHOICES[] = {{"5", DATA_5}, {"6", DATA_6}, {"7", DATA_7}, {"8", DATA_8}};
constexpr Choice PARITY_CHOICES[] = {
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "none"), PAR_NONE},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "odd"), PAR_ODD},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "even"), PAR_EVEN},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "mark"), PAR_MARK},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "space"), PAR_SPACE},
};
constexpr Choice STOP_BITS_CHOICES[] = {{"1", STOP_1}, {"1.5", STOP_1_5}, {"2", STOP_2}};
constexpr Choice FLOW_CHOICES[] = {
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "off"), FLOW_OFF},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "hard ware"), FLOW_HARDWARE},
    {QT_TRANSLATE_NOOP("QSerialCfgWidget", "xon/xoff"), FLOW_XONXOFF},
};

// No catalogue has an entry for a number, so all texts can take the same way.
template <size_t N> void choices_fill(QComboBox* box, const Choice (&choices)[N], int current)
{
    for (const Choice& choice : choices)
        box->addItem(QSerialCfgWidget::tr(choice.text), choice.data);
    box->setCurrentIndex(current);
}

int current_data(const QComboBox* box)
{
    return box->currentData(Qt::UserRole).toInt();
}

bool operator==(const SerialCfgIndexes& a, const SerialCfgIndexes& b)
{
    return a.port == b.port && a.baud == b.baud && a.data_bits == b.data_bits &&
           a.parity == b.parity && a.stop_bits == b.stop_bits && a.flow == b.flow &&
           a.timeout == b.timeout;
}

} // namespace

QSerialCfgWidget::QSerialCfgWidget(QWidget* parent, const QString& cfg_file)
    : QWidget(parent)
{
    IniFile settings(cfg_file);
    settings.beginGroup(GROUP);
    initial.port = PORT.read(settings);
    initial.baud = BAUD_RATE.read(settings);
    const int custom_rate = std::max(CUSTOM_BAUD.read(settings), CUSTOM_BAUD_MIN);
    initial.data_bits = DATA_BITS.read(settings);
    initial.parity = PARITY.read(settings);
    initial.stop_bits = STOP_BITS.read(settings);
    initial.flow = FLOW_CONTROL.read(settings);
    initial.timeout = TIMEOUT.read(settings);
    settings.endGroup();
    if (!cfg_file.isNull())
        this->cfg_file = cfg_file;

    port_build();
    baud_build(custom_rate);
    dataBitsComboBox = combo_create("dataBitsComboBox");
    choices_fill(dataBitsComboBox, DATA_BITS_CHOICES, initial.data_bits);
    parityComboBox = combo_create("parityComboBox");
    choices_fill(parityComboBox, PARITY_CHOICES, initial.parity);
    stopBitsComboBox = combo_create("stopBitsComboBox");
    choices_fill(stopBitsComboBox, STOP_BITS_CHOICES, initial.stop_bits);
    flowComboBox = combo_create("flowComboBox");
    choices_fill(flowComboBox, FLOW_CHOICES, initial.flow);
    timeout_build();
    layout_build();
}

QSerialCfgWidget::~QSerialCfgWidget()
{
    if (!cfg_file.isEmpty())
        settings_store();
}

bool QSerialCfgWidget::port_exists() const
{
    return portComboBox->count() > 0;
}

QString QSerialCfgWidget::port_name() const
{
    return portComboBox->currentText();
}

int QSerialCfgWidget::port_index() const
{
    return portComboBox->currentIndex();
}

int QSerialCfgWidget::baud_rate() const
{
    return current_data(baudComboBox);
}

int QSerialCfgWidget::data_bits() const
{
    return current_data(dataBitsComboBox);
}

int QSerialCfgWidget::parity() const
{
    return current_data(parityComboBox);
}

int QSerialCfgWidget::stop_bits() const
{
    return current_data(stopBitsComboBox);
}

int QSerialCfgWidget::flow_control() const
{
    return current_data(flowComboBox);
}

int QSerialCfgWidget::timeout() const
{
    return timeoutSpinBox->value();
}

void QSerialCfgWidget::port_settings_get(PortSettings* settings) const
{
    settings->BaudRate = static_cast<BaudRateType>(baud_rate());
    settings->DataBits = static_cast<DataBitsType>(data_bits());
    settings->Parity = static_cast<ParityType>(parity());
    settings->StopBits = static_cast<StopBitsType>(stop_bits());
    settings->FlowControl = static_cast<FlowType>(flow_control());
    settings->Timeout_Millisec = timeout();
}

void QSerialCfgWidget::indexes_get(SerialCfgIndexes* indexes) const
{
    indexes->port = portComboBox->currentIndex();
    indexes->baud = baudComboBox->currentIndex();
    indexes->data_bits = dataBitsComboBox->currentIndex();
    indexes->parity = parityComboBox->currentIndex();
    indexes->stop_bits = stopBitsComboBox->currentIndex();
    indexes->flow = flowComboBox->currentIndex();
    indexes->timeout = timeoutSpinBox->value();
}

int QSerialCfgWidget::custom_baud_index() const
{
    return baudComboBox->count() - 1;
}

bool QSerialCfgWidget::is_custom_baud_index(int index) const
{
    return index + 1 == baudComboBox->count();
}

int QSerialCfgWidget::custom_baud() const
{
    return baudComboBox->itemData(custom_baud_index(), Qt::UserRole).toInt();
}

void QSerialCfgWidget::custom_baud_set(int rate)
{
    const int row = custom_baud_index();
    const QString text = QStringLiteral("%1").arg(rate);
    baudComboBox->setItemText(row, text);
    baudComboBox->setItemData(row, rate, Qt::UserRole);
    // A row that keeps its text doesn't correct what was typed over it.
    if (baudComboBox->isEditable() && is_custom_baud_index(baudComboBox->currentIndex()))
        baudComboBox->setEditText(text);
}

void QSerialCfgWidget::settings_show(const QString& port, const PortSettings& settings)
{
    const int named = portComboBox->findText(port);
    const int linked = portComboBox->findText(QFileInfo(port).canonicalFilePath());
    portComboBox->setCurrentIndex(named != -1 ? named : linked);
    int baud = baudComboBox->findData(int(settings.BaudRate));
    if (baud == -1) {
        custom_baud_set(int(settings.BaudRate));
        baud = custom_baud_index();
    }
    baudComboBox->setCurrentIndex(baud);
    dataBitsComboBox->setCurrentIndex(dataBitsComboBox->findData(settings.DataBits));
    parityComboBox->setCurrentIndex(parityComboBox->findData(settings.Parity));
    stopBitsComboBox->setCurrentIndex(stopBitsComboBox->findData(settings.StopBits));
    flowComboBox->setCurrentIndex(flowComboBox->findData(settings.FlowControl));
    timeoutSpinBox->setValue(int(settings.Timeout_Millisec));
}

void QSerialCfgWidget::baudComboBoxIndexChanged(int index)
{
    if (!is_custom_baud_index(index)) {
        baudComboBox->setItemText(custom_baud_index(), tr(CUSTOM));
        baudComboBox->setEditable(false);
        return;
    }
    custom_baud_set(custom_baud());
    baudComboBox->setEditable(true);
    // Completion would turn a typed 1 into the first row that begins with it.
    baudComboBox->setCompleter(nullptr);
}

void QSerialCfgWidget::baudComboBoxTextChanged(QString s)
{
    if (!is_custom_baud_index(baudComboBox->currentIndex()))
        return;
    const QLineEdit* const edit = baudComboBox->lineEdit();
    const int cursor = edit ? edit->cursorPosition() : 0;

    bool is_integer = false;
    const int rate = s.toInt(&is_integer);
    custom_baud_set(is_integer ? std::max(rate, CUSTOM_BAUD_MIN) : custom_baud());

    // Typing goes on where it was; in a field that was emptied it replaces the number put back.
    if (!edit)
        return;
    if (s.isEmpty())
        baudComboBox->lineEdit()->selectAll();
    else
        baudComboBox->lineEdit()->setCursorPosition(cursor);
}

QComboBox* QSerialCfgWidget::combo_create(const char* name)
{
    auto* box = new QComboBox(this);
    box->setObjectName(name);
    return box;
}

void QSerialCfgWidget::port_build()
{
    portComboBox = combo_create("portComboBox");
    const QList<QextPortInfo> ports = QextSerialEnumerator::getPorts();
    for (int index = 0; index < ports.size(); ++index) {
        portComboBox->insertItem(index, ports.at(index).portName);
        if (index == initial.port)
            portComboBox->setCurrentIndex(index);
    }
}

void QSerialCfgWidget::baud_build(int custom_rate)
{
    baudComboBox = combo_create("baudComboBox");
    for (const int rate : BAUD_RATES)
        baudComboBox->addItem(QString::number(rate), rate);
    baudComboBox->addItem(tr(CUSTOM), custom_rate);
    // Enter in the custom row neither adds a row nor jumps to the one with the same number.
    baudComboBox->setInsertPolicy(QComboBox::NoInsert);
    baudComboBox->setDuplicatesEnabled(true);
    connect(baudComboBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QSerialCfgWidget::baudComboBoxIndexChanged);
    connect(baudComboBox, &QComboBox::currentTextChanged, this,
            &QSerialCfgWidget::baudComboBoxTextChanged);
    // Only now, so that the custom row opens when it is the one.
    baudComboBox->setCurrentIndex(initial.baud);
}

void QSerialCfgWidget::timeout_build()
{
    timeoutSpinBox = new QSpinBox(this);
    timeoutSpinBox->setObjectName("timeoutSpinBox");
    timeoutSpinBox->setRange(TIMEOUT_MIN, TIMEOUT_MAX);
    timeoutSpinBox->setSuffix(tr(" ms"));
    timeoutSpinBox->setValue(initial.timeout);
}

void QSerialCfgWidget::layout_build()
{
    const struct
    {
        QString label;
        QWidget* widget;
    } rows[] = {
        {tr("Port:"), portComboBox},          {tr("Baud Rate:"), baudComboBox},
        {tr("Data Bits:"), dataBitsComboBox}, {tr("Stop Bits:"), stopBitsComboBox},
        {tr("Parity:"), parityComboBox},      {tr("Flow Ctrl:"), flowComboBox},
        {tr("Timeout:"), timeoutSpinBox},
    };
    auto* grid = new QGridLayout;
    int row = 0;
    for (const auto& [label, widget] : rows) {
        auto* const name = new QLabel(label);
        name->setBuddy(widget); // for a screen reader
        grid->addWidget(name, row, 0);
        grid->addWidget(widget, row, 1);
        ++row;
    }
    setLayout(grid);
    // The one place where Tab would leave the order of the rows.
    setTabOrder(dataBitsComboBox, stopBitsComboBox);
}

void QSerialCfgWidget::settings_store() const
{
    IniFile settings(cfg_file);
    SerialCfgIndexes now;
    indexes_get(&now);
    settings.beginGroup(GROUP);
    if (now.port == PORT.read(settings) && custom_baud() == CUSTOM_BAUD.read(settings) &&
        now == initial)
        return;
    PORT.write(settings, now.port);
    BAUD_RATE.write(settings, now.baud);
    CUSTOM_BAUD.write(settings, custom_baud());
    DATA_BITS.write(settings, now.data_bits);
    PARITY.write(settings, now.parity);
    STOP_BITS.write(settings, now.stop_bits);
    FLOW_CONTROL.write(settings, now.flow);
    TIMEOUT.write(settings, now.timeout);
}
