#include "workbench/notice.h"

#include "workbench/icons.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>

namespace {
constexpr int ICON = 20; // px
} // namespace

Notice::Notice(QWidget* parent)
    : QWidget(parent)
    , icon(new QLabel)
    , label(new QLabel)
{
    label->setObjectName("notice_text");
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText); // names of files and ports are no markup
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    icon->setFixedSize(ICON, ICON);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(label, 1);
    hide();
}

void Notice::say(Kind kind, const QString& text)
{
    const QStyle::StandardPixmap fallbacks[] = {QStyle::SP_MessageBoxInformation,
                                                QStyle::SP_DialogApplyButton,
                                                QStyle::SP_MessageBoxWarning};
    const char* const names[] = {"dialog-information", "emblem-default", "dialog-warning"};
    icon->setPixmap(theme_icon(names[int(kind)], fallbacks[int(kind)]).pixmap(ICON, ICON));
    label->setText(text);
    label->setAccessibleName(text);
    setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        QAccessibleEvent event(label, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

QString Notice::text() const
{
    return label->text();
}
