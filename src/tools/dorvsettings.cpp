#include "tools/dorvsettings.h"

#include "tools/dorvcfg.h"

#include <tuple>

namespace {
constexpr int EUI = 8;
constexpr int KEY = 16;

DorvField number(const char* name, std::int64_t most)
{
    return {name, 0, most};
}

DorvField u8(const char* name)
{
    return number(name, UINT8_MAX);
}

DorvField u16(const char* name)
{
    return number(name, UINT16_MAX);
}

DorvField u32(const char* name)
{
    return number(name, UINT32_MAX);
}

DorvField s8(const char* name)
{
    return {name, INT8_MIN, INT8_MAX};
}

DorvField address(const char* name)
{
    DorvField field = u32(name);
    field.base = 16;
    return field;
}

// The words that mean 0, 1, ..; an empty one for a number that isn't used.
DorvField word(const QStringList& words)
{
    QStringList shown = words;
    shown.removeAll({});
    return {shown.join('|'), 0, 0, words};
}

// Split by |.
DorvField word(const char* words)
{
    return word(QString(words).split('|'));
}

DorvField word(const char* (*word_at)(int index))
{
    QStringList words;
    while (const char* text = word_at(int(words.size())))
        words.append(text);
    return word(words);
}

DorvField hex(int bytes)
{
    DorvField field = {"HEX"};
    field.bytes = bytes;
    return field;
}

// The first values as the arguments of an operation.
template <auto OPERATION, int COUNT> void set(DorvCfg& cfg, const DorvValues& values)
{
    const QVector<std::int64_t>& n = values.numbers;
    if constexpr (COUNT == 0)
        (cfg.*OPERATION)();
    else if constexpr (COUNT == 1)
        (cfg.*OPERATION)(n[0]);
    else if constexpr (COUNT == 2)
        (cfg.*OPERATION)(n[0], n[1]);
    else if constexpr (COUNT == 3)
        (cfg.*OPERATION)(n[0], n[1], n[2]);
    else
        (cfg.*OPERATION)(n[0], n[1], n[2], n[3]);
}

template <auto OPERATION> void set_bytes(DorvCfg& cfg, const DorvValues& values)
{
    (cfg.*OPERATION)(values.bytes.constData());
}

template <auto OPERATION, int SIZE> void get_bytes(DorvCfg& cfg, DorvValues& values)
{
    values.bytes = QByteArray(SIZE, '\0');
    (cfg.*OPERATION)(values.bytes.data());
}

template <auto OPERATION, typename... Numbers> void get(DorvCfg& cfg, DorvValues& values)
{
    std::tuple<Numbers...> numbers{};
    std::apply([&](auto&... number) { (cfg.*OPERATION)(&number...); }, numbers);
    std::apply([&](auto... number) { values.numbers = {std::int64_t(number)...}; }, numbers);
}
} // namespace

const QVector<DorvSetting>& dorv_settings()
{
    using D = DorvCfg;
    using U16 = std::uint16_t;
    // clang-format off
    static const QVector<DorvSetting> SETTINGS = {
        {"freq",       {u32("FREQUENCY")},               "radio frequency",             set<&D::freq_set, 1>},
        {"sf",         {u8("SF")},                       "spreading factor",            set<&D::sf_set, 1>},
        {"bw",         {word(at_bandwidth)},             "bandwidth in kHz",            set<&D::bw_set, 1>},
        {"cr",         {word(at_coding_rate)},           "coding rate",                 set<&D::cr_set, 1>},
        {"pwr",        {u8("POWER")},                    "transmit power",              set<&D::pwr_set, 1>},
        {"txprlen",    {u16("LENGTH")},                  "preamble sent",               set<&D::txprlen_set, 1>},
        {"rxprlen",    {u16("LENGTH")},                  "preamble expected",           set<&D::rxprlen_set, 1>},
        {"radiorx",    {word("off")},                    "radio receiver",              set<&D::radio_rx_off, 0>},
        {"rxfmt",      {word(at_rx_format)},             "form of received payload",    set<&D::rxfmt_set, 1>},
        {"echo",       {word("off")},                    "echo of commands",            set<&D::echo_off, 0>},
        {"uartcfg",    {u32("BAUD"), u8("DATABITS"), word("none||even"), u8("STOPBITS")},
                                                      "serial port of the module",   set<&D::uartcfg_set, 4>},
        {"uartpack",   {u16("A"), u16("B")},             "packing of serial data",      set<&D::uartpack_set, 2>},
        {"irq",        {word("rise||wdo"), u16("VALUE")}, "interrupt pin",               set<&D::irq_set, 2>},
        {"sleep",      {word("off||deep"), u16("VALUE"), word("timeout|level"), u16("TIMEOUT")},
                                                      "sleep; TIMEOUT is 0 with level", set<&D::sleep_set, 4>},
        {"devaddr",    {address("ADDRESS")},             "device address",              set<&D::devaddr_set, 1>, get<&D::devaddr_get, std::uint32_t>},
        {"join",       {word("otaa|abp"), u16("VALUE")}, "way to join; only the way is read", set<&D::join_set, 2>, get<&D::join_get, int>},
        {"class",      {word(at_class)},                 "device class",                set<&D::class_set, 1>, get<&D::class_get, int>},
        {"transcnf",   {word("uncnf|cnf")},              "confirmed sending",           set<&D::transcnf_set, 1>},
        {"transfport", {u8("PORT")},                     "port of sent data",           set<&D::transfport_set, 1>},
        {"pwrid",      {s8("INDEX")},                    "power index",                 set<&D::pwrid_set, 1>},
        {"dr",         {u8("RATE")},                     "data rate",                   set<&D::dr_set, 1>},
        {"retx",       {u8("COUNT")},                    "repeats",                     set<&D::retx_set, 1>},
        {"adr",        {word("off|on")},                 "adaptive data rate",          set<&D::adr_set, 1>},
        {"joinadr",    {word("off|on")},                 "adaptive data rate at joining", set<&D::joinadr_set, 1>},
        {"linkchk",    {u16("A"), u16("B"), u16("C")},   "link check",                  set<&D::linkchk_set, 3>},
        {"ch",         {u8("CHANNEL"), u32("FREQUENCY")}, "a channel's frequency",       set<&D::ch_set, 2>},
        {"level",      {u32("LEVEL")},                   "level",                       set<&D::level_set, 1>},
        {"heartbeat",  {u16("A"), u16("B"), u16("C")},   "heartbeat",                   set<&D::heartbeat_set, 3>, get<&D::heartbeat_get, U16, U16, U16>},
        {"pwrlimit",   {u16("A"), u16("B")},             "power limits",                set<&D::pwrlimit_set, 2>, get<&D::pwrlimit_get, U16, U16>},
        {"deveui",     {hex(EUI)},                       "device EUI, 8 bytes",         set_bytes<&D::deveui_set>, get_bytes<&D::deveui_get, EUI>},
        {"appeui",     {hex(EUI)},                       "application EUI, 8 bytes",    set_bytes<&D::appeui_set>, get_bytes<&D::appeui_get, EUI>},
        {"appkey",     {hex(KEY)},                       "application key, 16 bytes",   set_bytes<&D::appkey_set>, get_bytes<&D::appkey_get, KEY>},
        {"appskey",    {hex(KEY)},                       "application session key",     set_bytes<&D::appskey_set>, get_bytes<&D::appskey_get, KEY>},
        {"nwkskey",    {hex(KEY)},                       "network session key",         set_bytes<&D::nwkskey_set>, get_bytes<&D::nwkskey_get, KEY>},
    };
    // clang-format on
    return SETTINGS;
}

const DorvSetting* find_dorv_setting(const QString& name)
{
    for (const DorvSetting& setting : dorv_settings()) {
        if (name == setting.name)
            return &setting;
    }
    return nullptr;
}

QString form_of(const DorvSetting& setting)
{
    QStringList forms;
    for (const DorvField& field : setting.fields)
        forms.append(field.name);
    return forms.join(' ');
}

QStringList dorv_words(const DorvSetting& setting, const DorvValues& values)
{
    if (!values.bytes.isEmpty())
        return {QString::fromLatin1(values.bytes.toHex()).toUpper()};
    QStringList words;
    for (int i = 0; i < values.numbers.size(); ++i) {
        const DorvField& field = setting.fields[i];
        if (field.words.isEmpty())
            words.append((field.base == 16 ? "0x" : "") +
                         QString::number(values.numbers[i], field.base));
        else
            words.append(field.words.value(int(values.numbers[i])));
    }
    return words;
}
