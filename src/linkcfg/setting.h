// One key of an INI file with the value that an absent key means.
#pragma once

#include <QSettings>

template <typename Value> struct Setting
{
    const char* key = nullptr;
    Value fallback{};

    Value read(const QSettings& settings) const
    {
        return settings.value(QLatin1String(key), fallback).template value<Value>();
    }

    void write(QSettings& settings, const Value& value) const
    {
        settings.setValue(QLatin1String(key), value);
    }

    // Leaves the file alone where it already says so, an absent key for the fallback included.
    void write_if_changed(QSettings& settings, const Value& value) const
    {
        if (read(settings) != value)
            write(settings, value);
    }
};

// A comma that somebody typed into the file without quotes makes a list of a text, and toString()
// nothing of the list; here it is joined again.
template <> inline QString Setting<QString>::read(const QSettings& settings) const
{
    const QVariant value = settings.value(QLatin1String(key), fallback);
    return value.userType() == QMetaType::QStringList ? value.toStringList().join(",")
                                                      : value.toString();
}
