#include "cli/dorvarguments.h"

#include "cli/typedargument.h"
#include "stack/dorvtext.h"

DorvValues parse_dorv_values(const DorvSetting& setting, const QStringList& words)
{
    const QString usage = QStringLiteral("%1 takes: %2").arg(setting.name, form_of(setting));
    if (words.size() != setting.fields.size())
        throw usage_failure(usage, "`tarnwickctl dorv list` shows all settings.");
    DorvValues values;
    for (int i = 0; i < words.size(); ++i)
        parse_argument(
            setting.name, words[i],
            [&](const Piece& word) { take_dorv_value(setting.fields[i], word, values); }, usage);
    return values;
}
