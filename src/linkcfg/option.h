// One option that a widget shows: how it comes from the settings file and goes back there.
#pragma once

#include "linkcfg/setting.h"

#include <QString>
#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

// A load sets the field that mirrors the option, where there is one, and then the widget, whose
// slots may correct the field. A store compares first and leaves an unchanged file alone.
class Option
{
public:
    Option(const Setting<bool>& setting, QCheckBox* box, bool* field = nullptr);
    Option(const Setting<int>& setting, QSpinBox* box, int* field = nullptr);
    Option(const Setting<int>& setting, QComboBox* box); // the current row
    Option(const Setting<QString>& setting, QLineEdit* line);
    // One that no single widget shows.
    Option(std::function<void()> load, std::function<void(QSettings&)> store);

    void load(const QSettings& settings) const { loader(settings); }
    void store(QSettings& settings) const { storer(settings); }

private:
    std::function<void(const QSettings&)> loader;
    std::function<void(QSettings&)> storer;
};
