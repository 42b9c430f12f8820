// What a module says of itself, as a form.
#pragma once

#include "tools/loader.h"

#include <QGroupBox>
#include <optional>

class QLabel;

class DeviceBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit DeviceBox(QWidget* parent = nullptr);

    void device_set(const std::optional<LoaderDevice>& device);

protected:
    void changeEvent(QEvent* event) override;

private:
    enum Field { SOFT, HARD, MODE, PAGE, MTU, FIELDS };
    void retranslate();

    std::optional<LoaderDevice> shown;
    QLabel* names[FIELDS];
    QLabel* values[FIELDS];
};
