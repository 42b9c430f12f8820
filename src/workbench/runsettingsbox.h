// The settings of an upgrade, to be typed.
#pragma once

#include "workbench/upgraderun.h"

#include <QGroupBox>

class QLabel;
class QSettings;
class QSpinBox;

class RunSettingsBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit RunSettingsBox(QWidget* parent = nullptr);

    UpgradeSettings settings() const;
    void load(const QSettings& ini);
    void store(QSettings& ini) const;

protected:
    void changeEvent(QEvent* event) override;

private:
    enum Field { PACKET, ATTEMPTS, INTERVAL, RESET_WAIT, VERIFY_WAIT, FIELDS };
    void retranslate();

    QLabel* labels[FIELDS];
    QSpinBox* boxes[FIELDS];
};
