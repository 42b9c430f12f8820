#include "workbench/appearance.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

namespace {
struct Shades
{
    QRgb window, text, base, alternate, button, disabled, highlight, highlighted, link;
};

QPalette palette_of(const Shades& shades)
{
    QPalette palette(QColor(shades.button), QColor(shades.window));
    palette.setColor(QPalette::WindowText, shades.text);
    palette.setColor(QPalette::Text, shades.text);
    palette.setColor(QPalette::ButtonText, shades.text);
    palette.setColor(QPalette::Base, shades.base);
    palette.setColor(QPalette::AlternateBase, shades.alternate);
    palette.setColor(QPalette::ToolTipBase, shades.base);
    palette.setColor(QPalette::ToolTipText, shades.text);
    palette.setColor(QPalette::PlaceholderText, shades.disabled);
    palette.setColor(QPalette::Highlight, shades.highlight);
    palette.setColor(QPalette::HighlightedText, shades.highlighted);
    palette.setColor(QPalette::Link, shades.link);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, shades.disabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, shades.alternate);
    return palette;
}
} // namespace

QPalette light_palette()
{
    return palette_of({0xFFEFEFEF, 0xFF1A1A1A, 0xFFFFFFFF, 0xFFF4F6F8, 0xFFE6E6E6, 0xFF8A8A8A,
                       0xFF2F6FB0, 0xFFFFFFFF, 0xFF1F5FA0});
}

QPalette dark_palette()
{
    return palette_of({0xFF2B2B2B, 0xFFE6E6E6, 0xFF1E1E1E, 0xFF363636, 0xFF3A3A3A, 0xFF8C8C8C,
                       0xFF3D7EBF, 0xFFFFFFFF, 0xFF6FB0F0});
}

Appearance::Appearance()
    : desktop(QApplication::palette())
    , desktop_style(QApplication::style()->objectName())
{
}

// Styles of desktops may ignore a palette; Fusion takes each.
void Appearance::use(const QString& name) const
{
    const bool own = name == LIGHT || name == DARK;
    const QString style = own ? QString("fusion") : desktop_style;
    if (QApplication::style()->objectName() != style)
        QApplication::setStyle(style);
    const QPalette palette = name == DARK ? dark_palette() : own ? light_palette() : desktop;
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}
