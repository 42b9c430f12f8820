#include "workbench/runsettingsbox.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>

namespace {
constexpr int LONGEST_WAIT_MS = 600000;

struct Row
{
    const char* key; // in the INI file, and the widget's name
    int UpgradeSettings::*value;
    int least;
    int most;
    bool time;
};

constexpr Row ROWS[] = {
    {"packet", &UpgradeSettings::packet, 4, 65535, false},
    {"attempts", &UpgradeSettings::attempts, 1, 1000, false},
    {"interval", &UpgradeSettings::interval_ms, 0, LONGEST_WAIT_MS, true},
    {"reset_wait", &UpgradeSettings::reset_wait_ms, 0, LONGEST_WAIT_MS, true},
    {"verify_wait", &UpgradeSettings::verify_wait_ms, 0, LONGEST_WAIT_MS, true},
};
} // namespace

RunSettingsBox::RunSettingsBox(QWidget* parent)
    : QGroupBox(parent)
{
    auto* const grid = new QGridLayout(this);
    const UpgradeSettings defaults;
    for (int field = 0; field < FIELDS; ++field) {
        const Row& row = ROWS[field];
        boxes[field] = new QSpinBox;
        boxes[field]->setObjectName(row.key);
        boxes[field]->setRange(row.least, row.most);
        boxes[field]->setValue(defaults.*row.value);
        labels[field] = new QLabel;
        labels[field]->setBuddy(boxes[field]);
        grid->addWidget(labels[field], field, 0);
        grid->addWidget(boxes[field], field, 1);
    }
    grid->setRowStretch(FIELDS, 1);
    retranslate();
}

UpgradeSettings RunSettingsBox::settings() const
{
    UpgradeSettings settings;
    for (int field = 0; field < FIELDS; ++field)
        settings.*ROWS[field].value = boxes[field]->value();
    return settings;
}

void RunSettingsBox::load(const QSettings& ini)
{
    for (int field = 0; field < FIELDS; ++field)
        boxes[field]->setValue(
            ini.value(QString("upgrade/") + ROWS[field].key, boxes[field]->value()).toInt());
}

void RunSettingsBox::store(QSettings& ini) const
{
    for (int field = 0; field < FIELDS; ++field)
        ini.setValue(QString("upgrade/") + ROWS[field].key, boxes[field]->value());
}

void RunSettingsBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QGroupBox::changeEvent(event);
}

void RunSettingsBox::retranslate()
{
    setTitle(tr("Settings of the run"));
    const QString texts[FIELDS] = {tr("Packet len&gth:"), tr("Attempts:"), tr("Send interval:"),
                                   tr("Reset wait:"), tr("Verify wait:")};
    const QString hints[FIELDS] = {
        tr("Most bytes of the file in one packet; the module may take fewer."),
        tr("How often a packet or a question is sent before giving up."),
        tr("Pause after each packet, for slow modules."),
        tr("How long the module takes to start its boot code."),
        tr("How long the module takes to verify the whole file."),
    };
    for (int field = 0; field < FIELDS; ++field) {
        labels[field]->setText(texts[field]);
        boxes[field]->setToolTip(hints[field]);
        boxes[field]->setAccessibleDescription(hints[field]);
        boxes[field]->setSuffix(ROWS[field].time ? tr(" ms") : QString());
    }
}
