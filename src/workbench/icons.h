// Icons of the desktop's theme, with the style's own where the theme has none.
#pragma once

#include <QApplication>
#include <QIcon>
#include <QStyle>

inline QIcon theme_icon(const char* name, QStyle::StandardPixmap fallback)
{
    return QIcon::fromTheme(QLatin1String(name), QApplication::style()->standardIcon(fallback));
}
