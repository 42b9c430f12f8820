// One key of an INI file with the value that stands for an absent key.
#pragma once

#include <QSettings>

template <typename Value> struct Setting
{
    const char* key;
    Value fallback;

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
