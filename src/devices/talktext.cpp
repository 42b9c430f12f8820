#include "devices/talktext.h"

#include <algorithm>

TalkText::TalkText(const TalkSettings& settings)
    : form(settings.form)
    , line_length(std::max(SHORTEST_LINE, settings.line_length))
    , random(settings.seed)
{
}

QByteArray TalkText::next(int count)
{
    while (ready.size() < count)
        write_more();
    QByteArray bytes = ready.left(count);
    ready.remove(0, count);
    return bytes;
}

void TalkText::write_more()
{
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    switch (form) {
    case TalkForm::Lines: {
        QByteArray line = QByteArray::number(qlonglong(++line_number)).rightJustified(8, '0') + ' ';
        while (line.size() < line_length - 2)
            line += char(' ' + 1 + random() % 94);
        ready += line + "\r\n";
        break;
    }
    case TalkForm::Binary:
        ready += char(random() & 0xFF);
        break;
    case TalkForm::Hex: {
        const auto value = random();
        ready += DIGITS[value >> 4 & 0xF];
        ready += DIGITS[value & 0xF];
        ready += ' ';
        break;
    }
    }
}
