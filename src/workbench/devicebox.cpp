#include "workbench/devicebox.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>

DeviceBox::DeviceBox(QWidget* parent)
    : QGroupBox(parent)
{
    static constexpr const char* NAMES[FIELDS] = {"soft_info", "hard_info", "mode", "page_size",
                                                  "mtu"};
    auto* const grid = new QGridLayout(this);
    for (int field = 0; field < FIELDS; ++field) {
        names[field] = new QLabel;
        values[field] = new QLabel;
        values[field]->setObjectName(NAMES[field]);
        values[field]->setTextFormat(Qt::PlainText); // it comes from a device
        values[field]->setWordWrap(true);
        values[field]->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(names[field], field, 0, Qt::AlignTop);
        grid->addWidget(values[field], field, 1);
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(FIELDS, 1);
    setMinimumWidth(230);
    retranslate();
}

void DeviceBox::device_set(const std::optional<LoaderDevice>& device)
{
    shown = device;
    retranslate();
}

void DeviceBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QGroupBox::changeEvent(event);
}

void DeviceBox::retranslate()
{
    setTitle(tr("The module"));
    const QString labels[FIELDS] = {tr("Software:"), tr("Hardware:"), tr("Mode:"), tr("Page:"),
                                    tr("MTU:")};
    QString texts[FIELDS];
    if (shown) {
        const QString hard = QString::fromLatin1(shown->hard_info.toHex(' ').toUpper());
        texts[SOFT] = shown->soft_info;
        texts[HARD] = hard.isEmpty() ? tr("not reported") : hard;
        texts[MODE] = shown->in_boot ? tr("boot code") : tr("application");
        texts[PAGE] = tr("%1 bytes").arg(shown->rom_page_size);
        texts[MTU] = tr("%1 bytes").arg(shown->mtu);
    }
    for (int field = 0; field < FIELDS; ++field) {
        names[field]->setText(labels[field]);
        values[field]->setText(shown ? texts[field] : QStringLiteral("–"));
        values[field]->setAccessibleName(labels[field] + ' ' + values[field]->text());
    }
}
