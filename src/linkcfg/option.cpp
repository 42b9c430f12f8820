#include "linkcfg/option.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <utility>

namespace {

template <typename Value, typename Show>
std::function<void(const QSettings&)> loader_of(const Setting<Value>& setting, Show show,
                                                Value* field = nullptr)
{
    return [=](const QSettings& settings) {
        const Value value = setting.read(settings);
        if (field != nullptr)
            *field = value;
        show(value);
    };
}

template <typename Value, typename Shown>
std::function<void(QSettings&)> storer_of(const Setting<Value>& setting, Shown shown)
{
    return [=](QSettings& settings) { setting.write_if_changed(settings, shown()); };
}

} // namespace

Option::Option(const Setting<bool>& setting, QCheckBox* box, bool* field)
    : loader(loader_of(
          setting, [box](bool on) { box->setChecked(on); }, field))
    , storer(storer_of(setting, [box] { return box->isChecked(); }))
{
}

Option::Option(const Setting<int>& setting, QSpinBox* box, int* field)
    : loader(loader_of(
          setting, [box](int value) { box->setValue(value); }, field))
    , storer(storer_of(setting, [box] { return box->value(); }))
{
}

Option::Option(const Setting<int>& setting, QComboBox* box)
    : loader(loader_of(setting, [box](int row) { box->setCurrentIndex(row); }))
    , storer(storer_of(setting, [box] { return box->currentIndex(); }))
{
}

Option::Option(const Setting<QString>& setting, QLineEdit* line)
    : loader(loader_of(setting, [line](const QString& text) { line->setText(text); }))
    , storer(storer_of(setting, [line] { return line->text(); }))
{
}

Option::Option(std::function<void()> load, std::function<void(QSettings&)> store)
    : loader([load = std::move(load)](const QSettings& /*settings*/) { load(); })
    , storer(std::move(store))
{
}
