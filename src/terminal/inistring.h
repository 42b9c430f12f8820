// Texts out of an INI file that people edit by hand.
#pragma once

#include <QSettings>
#include <QString>

// The text of a key. A comma that somebody typed without quotes makes a list of it for QSettings,
// and an empty text; here the list is joined again.
QString ini_string(const QSettings& settings, const QString& key,
                   const QString& absent = QString());
