#include "inistring.h"

#include <QStringList>

QString ini_string(const QSettings& settings, const QString& key, const QString& absent)
{
    const QVariant value = settings.value(key, absent);
    return value.userType() == QMetaType::QStringList ? value.toStringList().join(", ")
                                                      : value.toString();
}
