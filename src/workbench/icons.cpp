#include "workbench/icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace {
// An icon of one colour, which is that of texts: black ones can't be seen on a dark button.
class TextIcon : public QIconEngine
{
public:
    explicit TextIcon(const QIcon& shape)
        : shape(shape)
    {
    }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(rect, pixmap(rect.size(), mode, state));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn = shape.pixmap(size, QIcon::Normal, state);
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QPainter painter(&drawn);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(drawn.rect(), QApplication::palette().color(group, QPalette::ButtonText));
        return drawn;
    }
    QIconEngine* clone() const override { return new TextIcon(shape); }

private:
    const QIcon shape;
};
} // namespace

QIcon theme_icon(const char* name, QStyle::StandardPixmap fallback)
{
    QIcon themed = QIcon::fromTheme(QLatin1String(name));
    if (!themed.isNull())
        return themed;
    const QIcon icon = QApplication::style()->standardIcon(fallback);
    const bool one_colour = fallback == QStyle::SP_MediaPlay || fallback == QStyle::SP_MediaStop;
    return one_colour ? QIcon(new TextIcon(icon)) : icon;
}
