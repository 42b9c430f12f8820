#include "terminal/option.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QSpinBox>
#include <utility>

namespace {

template <typename Value, typename Show>
std::function<void(const QSettings&)> loader_of(const Setting<Value>& setting, Value* field,
                                                Show show)
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
    : loader(loader_of(setting, field, [box](bool on) { box->setChecked(on); }))
    , storer(storer_of(setting, [box] { return box->isChecked(); }))
{
}

Option::Option(const Setting<int>& setting, QSpinBox* box, int* field)
    : loader(loader_of(setting, field, [box](int value) { box->setValue(value); }))
    , storer(storer_of(setting, [box] { return box->value(); }))
{
}

Option::Option(const Setting<QString>& setting, QLineEdit* line)
    : loader([=](const QSettings& settings) { line->setText(setting.read(settings)); })
    , storer(storer_of(setting, [line] { return line->text(); }))
{
}

Option::Option(std::function<void()> load, std::function<void(QSettings&)> store)
    : loader([load = std::move(load)](const QSettings& /*settings*/) { load(); })
    , storer(std::move(store))
{
}
