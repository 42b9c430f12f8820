#include "workbench/settinghints.h"

#include <algorithm>
#include <iterator>

namespace {
struct Hint
{
    const char* name;
    const char* unit;
    const char* text;
};

constexpr Hint HINTS[] = {
    {"freq", "Hz", QT_TRANSLATE_NOOP("SettingHints", "Frequency of the radio.")},
    {"sf", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Spreading factor: a higher one reaches farther and is slower.")},
    {"bw", "kHz",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Bandwidth of the radio: a narrower one reaches farther and is slower.")},
    {"cr", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Coding rate: how many bits go out for four of the payload.")},
    {"pwr", "", QT_TRANSLATE_NOOP("SettingHints", "Transmit power, as the module counts it.")},
    {"txprlen", "", QT_TRANSLATE_NOOP("SettingHints", "Length of the preamble that is sent.")},
    {"rxprlen", "", QT_TRANSLATE_NOOP("SettingHints", "Length of the preamble that is expected.")},
    {"radiorx", "", QT_TRANSLATE_NOOP("SettingHints", "Turns the radio's receiver off.")},
    {"rxfmt", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "How received payload is given out: as it is, or in hexadecimal.")},
    {"echo", "",
     QT_TRANSLATE_NOOP("SettingHints", "Turns off that the module repeats each command.")},
    {"uartcfg", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Serial port of the module: bits per second, data bits, parity, stop bits. "
                       "Written last; connect anew at the new rate.")},
    {"uartpack", "", QT_TRANSLATE_NOOP("SettingHints", "How serial data is packed for the radio.")},
    {"irq", "", QT_TRANSLATE_NOOP("SettingHints", "When the interrupt pin acts, and its value.")},
    {"sleep", "",
     QT_TRANSLATE_NOOP(
         "SettingHints",
         "Sleep of the module, and what wakes it; TIMEOUT is 0 with level. Written last.")},
    {"devaddr", "", QT_TRANSLATE_NOOP("SettingHints", "Address of the device in its network.")},
    {"join", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "How the device joins its network; only the way is read, not its value.")},
    {"class", "", QT_TRANSLATE_NOOP("SettingHints", "LoRaWAN class of the device.")},
    {"transcnf", "", QT_TRANSLATE_NOOP("SettingHints", "Whether what is sent must be confirmed.")},
    {"transfport", "", QT_TRANSLATE_NOOP("SettingHints", "Port number of sent data.")},
    {"pwrid", "", QT_TRANSLATE_NOOP("SettingHints", "Index of the transmit power.")},
    {"dr", "", QT_TRANSLATE_NOOP("SettingHints", "Index of the data rate.")},
    {"retx", "", QT_TRANSLATE_NOOP("SettingHints", "How often unconfirmed data is repeated.")},
    {"adr", "", QT_TRANSLATE_NOOP("SettingHints", "Whether the network adapts the data rate.")},
    {"joinadr", "",
     QT_TRANSLATE_NOOP("SettingHints", "Whether the data rate adapts while joining.")},
    {"linkchk", "", QT_TRANSLATE_NOOP("SettingHints", "The three values of the link check.")},
    {"ch", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Frequency of one channel, in Hz: the channel's number first.")},
    {"level", "", QT_TRANSLATE_NOOP("SettingHints", "Level, as the module counts it.")},
    {"heartbeat", "", QT_TRANSLATE_NOOP("SettingHints", "The three values of the heartbeat.")},
    {"pwrlimit", "", QT_TRANSLATE_NOOP("SettingHints", "The two limits of the power.")},
    {"deveui", "", QT_TRANSLATE_NOOP("SettingHints", "EUI of the device, 8 bytes.")},
    {"appeui", "", QT_TRANSLATE_NOOP("SettingHints", "EUI of the application, 8 bytes.")},
    {"appkey", "",
     QT_TRANSLATE_NOOP("SettingHints",
                       "Key of the application, 16 bytes. Keep files with it to yourself.")},
    {"appskey", "", QT_TRANSLATE_NOOP("SettingHints", "Session key of the application, 16 bytes.")},
    {"nwkskey", "", QT_TRANSLATE_NOOP("SettingHints", "Session key of the network, 16 bytes.")},
};

const Hint* hint_of(const DorvSetting& setting)
{
    const auto* const hint = std::find_if(std::begin(HINTS), std::end(HINTS), [&](const Hint& row) {
        return setting.name == QLatin1String(row.name);
    });
    return hint == std::end(HINTS) ? nullptr : hint;
}
} // namespace

QString SettingHints::hint(const DorvSetting& setting)
{
    const Hint* const hint = hint_of(setting);
    return hint ? tr(hint->text) : setting.meaning;
}

QString SettingHints::unit(const DorvSetting& setting)
{
    const Hint* const hint = hint_of(setting);
    return hint ? QString(hint->unit) : QString();
}
