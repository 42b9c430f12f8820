#include "cli/dorvsettings.h"

#include "cli/hexbytes.h"
#include "cli/usage.h"
#include "tools/dorvcfg.h"

namespace {
using Values = DorvValues;

DorvField number(const char* name, qint64 most)
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

DorvField word(const char* words)
{
    return {words, 0, 0, words};
}

DorvField hex(int bytes)
{
    return {"HEX", 0, 0, nullptr, bytes};
}

// A setting of a number or a word that goes into one argument.
template <auto operation> int set_one(DorvCfg& cfg, const Values& values)
{
    return (cfg.*operation)(values.numbers[0]);
}

template <auto operation> int set_two(DorvCfg& cfg, const Values& values)
{
    return (cfg.*operation)(values.numbers[0], values.numbers[1]);
}

template <auto operation> int set_three(DorvCfg& cfg, const Values& values)
{
    return (cfg.*operation)(values.numbers[0], values.numbers[1], values.numbers[2]);
}

template <auto operation> int set_four(DorvCfg& cfg, const Values& values)
{
    const QVector<qint64>& n = values.numbers;
    return (cfg.*operation)(n[0], n[1], n[2], n[3]);
}

template <auto operation> int set_none(DorvCfg& cfg, const Values&)
{
    return (cfg.*operation)();
}

template <auto operation> int set_bytes(DorvCfg& cfg, const Values& values)
{
    return (cfg.*operation)(values.bytes.constData());
}

template <auto operation, int size> int get_bytes(DorvCfg& cfg, Values& values)
{
    values.bytes = QByteArray(size, '\0');
    return (cfg.*operation)(values.bytes.data());
}

template <auto operation, typename Number> int get_one(DorvCfg& cfg, Values& values)
{
    Number value = 0;
    const int result = (cfg.*operation)(&value);
    values.numbers = {qint64(value)};
    return result;
}

int get_heartbeat(DorvCfg& cfg, Values& values)
{
    quint16 first = 0, second = 0, third = 0;
    const int result = cfg.heartbeat_get(&first, &second, &third);
    values.numbers = {first, second, third};
    return result;
}

int get_pwrlimit(DorvCfg& cfg, Values& values)
{
    quint16 first = 0, second = 0;
    const int result = cfg.pwrlimit_get(&first, &second);
    values.numbers = {first, second};
    return result;
}

const char BANDWIDTHS[] = "7.8|10.4|15.6|20.8|31.25|41.7|62.5|125|250|500";
constexpr int EUI = 8;
constexpr int KEY = 16;
} // namespace

const QVector<DorvSetting>& dorv_settings()
{
    using D = DorvCfg;
    // clang-format off
    static const QVector<DorvSetting> SETTINGS = {
        {"freq",       {u32("FREQUENCY")},            "radio frequency",             set_one<&D::freq_set>},
        {"sf",         {u8("SF")},                    "spreading factor",            set_one<&D::sf_set>},
        {"bw",         {word(BANDWIDTHS)},            "bandwidth in kHz",            set_one<&D::bw_set>},
        {"cr",         {word("4/5|4/6|4/7|4/8")},     "coding rate",                 set_one<&D::cr_set>},
        {"pwr",        {u8("POWER")},                 "transmit power",              set_one<&D::pwr_set>},
        {"txprlen",    {u16("LENGTH")},               "preamble sent",               set_one<&D::txprlen_set>},
        {"rxprlen",    {u16("LENGTH")},               "preamble expected",           set_one<&D::rxprlen_set>},
        {"radiorx",    {word("off")},                 "radio receiver",              set_none<&D::radio_rx_off>},
        {"rxfmt",      {word("raw|hex")},             "form of received payload",    set_one<&D::rxfmt_set>},
        {"echo",       {word("off")},                 "echo of commands",            set_none<&D::echo_off>},
        {"uartcfg",    {u32("BAUD"), u8("DATABITS"), word("none||even"), u8("STOPBITS")},
                                                      "serial port of the module",   set_four<&D::uartcfg_set>},
        {"uartpack",   {u16("A"), u16("B")},          "packing of serial data",      set_two<&D::uartpack_set>},
        {"irq",        {word("rise||wdo"), u16("VALUE")}, "interrupt pin",           set_two<&D::irq_set>},
        {"sleep",      {word("off||deep"), u16("VALUE"), word("timeout|level"), u16("TIMEOUT")},
                                                      "sleep; TIMEOUT is 0 with level", set_four<&D::sleep_set>},
        {"devaddr",    {address("ADDRESS")},          "device address",              set_one<&D::devaddr_set>, get_one<&D::devaddr_get, quint32>},
        {"join",       {word("otaa|abp"), u16("VALUE")}, "way to join; only the way is read", set_two<&D::join_set>, get_one<&D::join_get, int>},
        {"class",      {word("a|b|c")},               "device class",                set_one<&D::class_set>, get_one<&D::class_get, int>},
        {"transcnf",   {word("uncnf|cnf")},           "confirmed sending",           set_one<&D::transcnf_set>},
        {"transfport", {u8("PORT")},                  "port of sent data",           set_one<&D::transfport_set>},
        {"pwrid",      {s8("INDEX")},                 "power index",                 set_one<&D::pwrid_set>},
        {"dr",         {u8("RATE")},                  "data rate",                   set_one<&D::dr_set>},
        {"retx",       {u8("COUNT")},                 "repeats",                     set_one<&D::retx_set>},
        {"adr",        {word("off|on")},              "adaptive data rate",          set_one<&D::adr_set>},
        {"joinadr",    {word("off|on")},              "adaptive data rate at joining", set_one<&D::joinadr_set>},
        {"linkchk",    {u16("A"), u16("B"), u16("C")}, "link check",                 set_three<&D::linkchk_set>},
        {"ch",         {u8("CHANNEL"), u32("FREQUENCY")}, "a channel's frequency",   set_two<&D::ch_set>},
        {"level",      {u32("LEVEL")},                "level",                       set_one<&D::level_set>},
        {"heartbeat",  {u16("A"), u16("B"), u16("C")}, "heartbeat",                  set_three<&D::heartbeat_set>, get_heartbeat},
        {"pwrlimit",   {u16("A"), u16("B")},          "power limits",                set_two<&D::pwrlimit_set>, get_pwrlimit},
        {"deveui",     {hex(EUI)},                    "device EUI, 8 bytes",         set_bytes<&D::deveui_set>, get_bytes<&D::deveui_get, EUI>},
        {"appeui",     {hex(EUI)},                    "application EUI, 8 bytes",    set_bytes<&D::appeui_set>, get_bytes<&D::appeui_get, EUI>},
        {"appkey",     {hex(KEY)},                    "application key, 16 bytes",   set_bytes<&D::appkey_set>, get_bytes<&D::appkey_get, KEY>},
        {"appskey",    {hex(KEY)},                    "application session key",     set_bytes<&D::appskey_set>, get_bytes<&D::appskey_get, KEY>},
        {"nwkskey",    {hex(KEY)},                    "network session key",         set_bytes<&D::nwkskey_set>, get_bytes<&D::nwkskey_get, KEY>},
    };
    // clang-format on
    return SETTINGS;
}

const DorvSetting* find_dorv_setting(const QString& name)
{
    for (const DorvSetting& setting : dorv_settings()) {
        if (name == QLatin1String(setting.name))
            return &setting;
    }
    return nullptr;
}

QString form_of(const DorvSetting& setting)
{
    QStringList forms;
    for (const DorvField& field : setting.fields)
        forms.append(QString(field.name).replace("||", "|"));
    return forms.join(' ');
}

static QString expectation(const DorvField& field)
{
    if (field.words)
        return "one of " + QString(field.words).replace("||", "|").replace('|', ", ");
    if (field.bytes)
        return QStringLiteral("%1 bytes in hexadecimal").arg(field.bytes);
    return QStringLiteral("%1 is a number from %2 to %3")
        .arg(field.name)
        .arg(field.least)
        .arg(field.most);
}

static bool take(const DorvField& field, const QString& text, DorvValues& values)
{
    if (field.bytes) {
        const Parsed<QByteArray> bytes = parse_hex_bytes(text);
        values.bytes = bytes.value;
        return !bytes.error && bytes.value.size() == field.bytes;
    }
    const std::optional<qint64> number =
        field.words ? std::optional<qint64>(QString(field.words).split('|').indexOf(text))
                    : number_in(text, field.least, field.most);
    values.numbers.append(number.value_or(0));
    return number && !text.isEmpty() && (!field.words || *number >= 0);
}

DorvValues parse_dorv_values(const DorvSetting& setting, const QStringList& words)
{
    const QString usage = QStringLiteral("%1 takes: %2").arg(setting.name, form_of(setting));
    if (words.size() != setting.fields.size())
        throw usage_failure(usage, "`tarnwickctl dorv list` shows all settings.");
    DorvValues values;
    for (int i = 0; i < words.size(); ++i) {
        if (!take(setting.fields[i], words[i], values))
            throw usage_failure('"' + words[i] + "\": " + expectation(setting.fields[i]), usage);
    }
    return values;
}

QStringList dorv_words(const DorvSetting& setting, const DorvValues& values)
{
    if (!values.bytes.isEmpty())
        return {QString::fromLatin1(values.bytes.toHex()).toUpper()};
    QStringList words;
    for (int i = 0; i < values.numbers.size(); ++i) {
        const DorvField& field = setting.fields[i];
        if (field.words)
            words.append(QString(field.words).split('|').value(int(values.numbers[i])));
        else
            words.append((field.base == 16 ? "0x" : "") +
                         QString::number(values.numbers[i], field.base));
    }
    return words;
}
