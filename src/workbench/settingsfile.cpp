#include "workbench/settingsfile.h"

#include "stack/typedtext.h"
#include "workbench/settingvalue.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

namespace {
constexpr int NAME_COLUMNS = 12;

SettingLine line_of(const QString& text, const QVector<SettingLine>& before)
{
    const QString name = text.section(' ', 0, 0);
    const DorvSetting* const setting = find_dorv_setting(name);
    if (!setting)
        throw TextError{SettingsFile::tr("there is no setting %1").arg(name)};
    const bool twice = std::any_of(before.cbegin(), before.cend(), [&](const SettingLine& line) {
        return line.setting == setting;
    });
    if (twice)
        throw TextError{SettingsFile::tr("%1 is there twice").arg(name)};
    return {setting, SettingValue::normal(*setting, text.section(' ', 1))};
}
} // namespace

SettingsFile SettingsFile::parse(const QString& name, const QString& text)
{
    SettingsFile file;
    int number = 0;
    for (const QString& raw : text.split('\n')) {
        const QString line = raw.simplified();
        ++number;
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        try {
            file.lines.append(line_of(line, file.lines));
        } catch (const TextError& error) {
            return {{}, tr("%1, line %2: %3.").arg(name, QString::number(number), error.message)};
        }
    }
    if (file.lines.isEmpty())
        file.problem = tr("There are no settings in %1.").arg(name);
    return file;
}

SettingsFile SettingsFile::read(const QString& path)
{
    const QFileInfo info(path);
    QFile file(path);
    // A pipe would keep the window waiting.
    if (info.exists() && !info.isFile())
        return {{}, tr("%1 is no file.").arg(path)};
    if (!file.open(QIODevice::ReadOnly))
        return {{}, tr("The file %1 can't be read (%2).").arg(path, file.errorString())};
    const QByteArray content = file.read(LARGEST + 1);
    if (content.size() > LARGEST)
        return {{}, tr("%1 is too large for a file of settings.").arg(info.fileName())};
    return parse(info.fileName(), QString::fromUtf8(content));
}

QString SettingsFile::write(const QString& path) const
{
    QByteArray content;
    for (const SettingLine& line : lines)
        content += (line.setting->name.leftJustified(NAME_COLUMNS) + line.value + '\n').toUtf8();
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly) && out.write(content) == content.size() && out.commit())
        return {};
    return tr("The file %1 can't be written (%2): choose another place.")
        .arg(path, out.errorString());
}
