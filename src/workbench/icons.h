// Icons of the desktop's theme, with the style's own where the theme has none.
#pragma once

#include <QIcon>
#include <QStyle>

QIcon theme_icon(const char* name, QStyle::StandardPixmap fallback);
