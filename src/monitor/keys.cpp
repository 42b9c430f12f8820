#include "monitor/keys.h"

#include <algorithm>
#include <iterator>

namespace {
constexpr char CONTROL_BITS = 0x1f;

// What a key after the prefix means: Ctrl-Q and Q are q.
char plain(char key)
{
    if (key >= 1 && key <= 26)
        return char(key + 'a' - 1);
    return key >= 'A' && key <= 'Z' ? char(key + 'a' - 'A') : key;
}
} // namespace

int KeyReader::take(const QByteArray& keys, int from, KeyEvent& event)
{
    event = {};
    for (int at = from; at < keys.size(); ++at) {
        const char key = keys[at];
        if (!after_prefix && key != prefix) {
            event.bytes += key;
            continue;
        }
        if (!after_prefix && !event.bytes.isEmpty())
            return at - from; // what was typed before goes first
        if (!after_prefix) {
            after_prefix = true;
            continue;
        }
        after_prefix = false;
        if (key == prefix) {
            event.bytes += key;
            continue;
        }
        const auto* const row = std::find_if(std::begin(KEYS), std::end(KEYS),
                                             [&](const KeyRow& r) { return r.key == plain(key); });
        if (row == std::end(KEYS))
            event.unknown = key;
        else
            event.action = row->action;
        return at - from + 1;
    }
    return int(keys.size()) - from;
}

QString shown_key(char control)
{
    return control >= 1 && control <= CONTROL_BITS ? QString("Ctrl-") + QChar(control + '@')
                                                   : QString(QChar(control));
}

QString key_help(char prefix)
{
    QString text;
    for (const KeyRow& row : KEYS)
        text += shown_key(prefix) + ' ' + QChar(row.key) + "  " + row.meaning + '\n';
    return text + shown_key(prefix) + ' ' + shown_key(prefix) + " sends " + shown_key(prefix) +
           ". Other keys go out as typed.\n";
}
