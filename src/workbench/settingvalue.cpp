#include "workbench/settingvalue.h"

#include "stack/dorvtext.h"

namespace {
// Split at blanks; bytes may have blanks between.
QVector<Piece> pieces_of(const DorvSetting& setting, const QString& line)
{
    if (setting.fields.size() == 1 && setting.fields[0].bytes)
        return {Piece(line.trimmed())};
    QVector<Piece> pieces;
    for (const Piece& piece : Piece(line.simplified()).split(' ')) {
        if (!piece.text.isEmpty())
            pieces.append(piece);
    }
    return pieces;
}

DorvValues values_of(const DorvSetting& setting, const QVector<Piece>& pieces)
{
    DorvValues values;
    for (int i = 0; i < pieces.size(); ++i)
        take_dorv_value(setting.fields[i], pieces[i], values);
    return values;
}

TextError takes(const DorvSetting& setting)
{
    return {SettingValue::tr("%1 takes: %2").arg(setting.name, form_of(setting))};
}
} // namespace

DorvValues SettingValue::parse(const DorvSetting& setting, const QString& line)
{
    const QVector<Piece> pieces = pieces_of(setting, line);
    if (pieces.size() != setting.fields.size())
        throw takes(setting);
    return values_of(setting, pieces);
}

QString SettingValue::line(const DorvSetting& setting, const DorvValues& values)
{
    return dorv_words(setting, values).join(' ');
}

QString SettingValue::normal(const DorvSetting& setting, const QString& line)
{
    const QVector<Piece> pieces = pieces_of(setting, line);
    const bool whole = pieces.size() == setting.fields.size();
    const bool part = setting.get && !pieces.isEmpty() && pieces.size() < setting.fields.size();
    if (!whole && !part)
        throw takes(setting);
    return SettingValue::line(setting, values_of(setting, pieces));
}

QString SettingValue::range(const DorvSetting& setting)
{
    QStringList ranges;
    for (const DorvField& field : setting.fields) {
        const QString name = setting.fields.size() > 1 ? field.name + ' ' : QString();
        if (!field.words.isEmpty())
            ranges.append(QString(field.name).replace("|", " | "));
        else if (field.bytes)
            ranges.append(tr("%1 bytes in hexadecimal").arg(field.bytes));
        else if (field.base == 16)
            ranges.append(name + tr("0x0 to 0x%1").arg(field.most, 0, 16));
        else
            ranges.append(name + tr("%1 to %2").arg(field.least).arg(field.most));
    }
    return ranges.join(", ");
}

bool SettingValue::begins(const QString& whole, const QString& part)
{
    return !part.isEmpty() && (whole + ' ').startsWith(part + ' ');
}
