#include "linkcfg/qlinkcfgdlg.h"

#include "linkcfg/inifile.h"
#include "linkcfg/qserialcfgwidget.h"
#include "linkcfg/qtcpipcfgwidget.h"
#include "linkcfg/setting.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

const QString GROUP = QStringLiteral("QLinkCfgDlg");
const Setting<int> LINK_TYPE = {"link_type", 0};

// The row is the index of the page and the value in the file.
constexpr const char* LINK_TYPES[] = {
    QT_TRANSLATE_NOOP("QLinkCfgDlg", "Serial"),
    QT_TRANSLATE_NOOP("QLinkCfgDlg", "TCPIP"),
    QT_TRANSLATE_NOOP("QLinkCfgDlg", "CAN"),
    QT_TRANSLATE_NOOP("QLinkCfgDlg", "USB"),
};

int stored_link_type(const QString& cfg_file)
{
    IniFile settings(cfg_file);
    settings.beginGroup(GROUP);
    return LINK_TYPE.read(settings);
}

} // namespace

QLinkCfgDlg::QLinkCfgDlg(QWidget* parent, const QString& cfg_file)
    : QDialog(parent)
    , serial_page(new QSerialCfgWidget(this, cfg_file))
    , tcpip_page(new QTcpipCfgWidget(this, cfg_file))
    , cfg_file(cfg_file)
{
    const int stored = stored_link_type(cfg_file);
    page_stack = page_stack_create(stored);
    link_type_box = link_type_box_create(stored);
    connect(link_type_box, QOverload<int>::of(&QComboBox::activated), page_stack,
            &QStackedWidget::setCurrentIndex);
    button_box = button_box_create();
    layout_build();
    setWindowTitle(tr("Link config"));
}

QLinkCfgDlg::~QLinkCfgDlg()
{
    link_type_store();
    // The pages store their settings after it and in this order, which is that of a new file.
    delete serial_page;
    delete tcpip_page;
}

int QLinkCfgDlg::link_type() const
{
    return link_type_box->currentIndex();
}

void QLinkCfgDlg::link_type_set(int type)
{
    link_type_box->setCurrentIndex(type);
    page_stack->setCurrentIndex(type);
}

QStackedWidget* QLinkCfgDlg::page_stack_create(int link_type)
{
    auto* stack = new QStackedWidget(this);
    stack->setObjectName("page_stack");
    stack->setFrameStyle(QFrame::StyledPanel);
    stack->addWidget(serial_page);
    stack->addWidget(tcpip_page);
    stack->addWidget(new QLabel(tr("Sorry, not implemented")));
    stack->addWidget(new QLabel(tr("Sorry, not implemented")));
    stack->setCurrentIndex(link_type);
    return stack;
}

QComboBox* QLinkCfgDlg::link_type_box_create(int link_type)
{
    auto* box = new QComboBox(this);
    box->setObjectName("link_type_box");
    box->setAccessibleName(tr("Link type"));
    for (const char* type : LINK_TYPES)
        box->addItem(tr(type));
    box->setCurrentIndex(link_type);
    return box;
}

QDialogButtonBox* QLinkCfgDlg::button_box_create()
{
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->setObjectName("button_box");
    box->setCenterButtons(true);
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return box;
}

void QLinkCfgDlg::layout_build()
{
    auto* type_group = new QGroupBox(tr("Link type"));
    auto* type_layout = new QVBoxLayout(type_group);
    type_layout->addWidget(link_type_box);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(type_group);
    layout->addWidget(page_stack);
    layout->addWidget(button_box);

    // The pages came first, so Tab starts on the page, goes on to the buttons and ends at the type.
    setTabOrder(button_box->buttons().constLast(), link_type_box);
}

void QLinkCfgDlg::link_type_store() const
{
    IniFile settings(cfg_file);
    settings.beginGroup(GROUP);
    LINK_TYPE.write_if_changed(settings, link_type_box->currentIndex());
}
