// The colours of the window: the desktop's, or a light or dark palette of its own.
#pragma once

#include <QPalette>
#include <QString>

class Appearance
{
public:
    static constexpr const char* LIGHT = "light";
    static constexpr const char* DARK = "dark";

    // Remembers what the desktop has given.
    Appearance();

    // Any other name stands for the desktop's.
    void use(const QString& name) const;

private:
    const QPalette desktop;
    const QString desktop_style;
};

QPalette light_palette();
QPalette dark_palette();
