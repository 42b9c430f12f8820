#include "devices/dorvmemory.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace {
const char ACCESS[] = "xyz.quendal.zz";
const char ABP_ACCESS[] = "abp,xyz.quendal.zz";
const char NO_KEY[] = "00000000000000000000000000000000";
const char NO_ABP_KEY[] = "abp,00000000000000000000000000000000";

// A form has one entry a field, split by commas. An entry is one or more words or types, split by
// bars; the types are u8, u16, u32, s8 (decimal), x32 (hexadecimal after 0x), h8 and h16 (so many
// bytes as hexadecimal digits).
struct Setting
{
    const char* name = nullptr;
    const char* form = nullptr;
    const char* factory = nullptr;
    const char* access = ""; // what a question must carry to be answered
};

const Setting SETTINGS[] = {
    {"echo", "on|off", "off"},
    {"mode", "radio|pmac|mac", "radio"},
    {"freq", "u32", "433000000"},
    {"sf", "u8", "7"},
    {"bw", "7.8|10.4|15.6|20.8|31.25|41.7|62.5|125|250|500", "125"},
    {"cr", "4/5|4/6|4/7|4/8", "4/5"},
    {"pwr", "u8", "20"},
    {"txprlen", "u16", "8"},
    {"rxprlen", "u16", "8"},
    {"radiorx", "u16", "0"},
    {"rxfmt", "raw|hex", "raw"},
    {"uartcfg", "u32,u8,n|e,u8", "115200,8,n,1"},
    {"uartpack", "u16,u16", "128,20"},
    {"irq", "rise|wdo,u16", "rise,0"},
    {"sleep", "off|deep,u16,level|timeout,low|u16", "off,0,level,low"},
    {"devaddr", "x32", "0x0"},
    {"join", "otaa|abp,u16", "otaa,0"},
    {"class", "a|b|c", "a"},
    {"transcnf", "cnf|uncnf", "uncnf"},
    {"transfport", "u8", "1"},
    {"pwrid", "s8", "0"},
    {"dr", "u8", "0"},
    {"retx", "u8", "3"},
    {"adr", "on|off", "on"},
    {"joinadr", "on|off", "on"},
    {"linkchk", "u16,u16,u16", "0,0,0"},
    {"level", "u32", "0"},
    {"heartbeat", "u16,u16,u16", "0,0,0"},
    {"pwrlimit", "u16,u16", "0,0"},
    {"deveui", "h8", "0011223344556677"},
    {"appeui", "h8", "8899AABBCCDDEEFF"},
    {"appkey", "h16", NO_KEY, ACCESS},
    {"appskey", "abp,h16", NO_ABP_KEY, ABP_ACCESS},
    {"nwkskey", "abp,h16", NO_ABP_KEY, ABP_ACCESS},
};

// A channel plan has one value for each channel; each is remembered under its number.
const char CHANNEL[] = "ch";
const char CHANNEL_FORM[] = "u8,u32,1,5";

const Setting* find_setting(const QByteArray& name)
{
    for (const Setting& setting : SETTINGS) {
        if (name == setting.name)
            return &setting;
    }
    return nullptr;
}

bool is_number(const QByteArray& text, std::int64_t least, std::int64_t most, int base = 10)
{
    bool ok = false;
    const std::int64_t value = text.toLongLong(&ok, base);
    // Not the sign and the white space that the conversion passes over: a line feed among it would
    // break the file.
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
        return c == '-' || isxdigit(static_cast<unsigned char>(c)) != 0;
    });
    return ok && plain && value >= least && value <= most;
}

bool is_hex(const QByteArray& text, int bytes)
{
    return text.size() == 2 * bytes && QByteArray::fromHex(text).size() == bytes &&
           QByteArray::fromHex(text).toHex() == text.toLower();
}

bool fits_alternative(const QByteArray& text, const QByteArray& alternative)
{
    if (alternative == "u8")
        return is_number(text, 0, UINT8_MAX);
    if (alternative == "u16")
        return is_number(text, 0, UINT16_MAX);
    if (alternative == "u32")
        return is_number(text, 0, UINT32_MAX);
    if (alternative == "s8")
        return is_number(text, INT8_MIN, INT8_MAX);
    if (alternative == "x32")
        return text.startsWith("0x") && is_number(text.mid(2), 0, UINT32_MAX, 16);
    if (alternative == "h8")
        return is_hex(text, 8);
    if (alternative == "h16")
        return is_hex(text, 16);
    return text == alternative;
}

bool fits(const QByteArray& value, const QByteArray& form)
{
    const QList<QByteArray> fields = value.split(',');
    const QList<QByteArray> entries = form.split(',');
    return std::equal(fields.begin(), fields.end(), entries.begin(), entries.end(),
                      [](const QByteArray& field, const QByteArray& entry) {
                          const QList<QByteArray> alternatives = entry.split('|');
                          return std::any_of(alternatives.begin(), alternatives.end(),
                                             [&](const QByteArray& alternative) {
                                                 return fits_alternative(field, alternative);
                                             });
                      });
}

[[noreturn]] void fail(const QString& path, const QString& reason)
{
    throw std::runtime_error(QStringLiteral("settings %1: %2").arg(path, reason).toStdString());
}
} // namespace

DorvMemory::DorvMemory(const QString& path)
    : path(path)
{
    for (const Setting& setting : SETTINGS)
        values[setting.name] = setting.factory;
    if (!path.isEmpty() && QFile::exists(path))
        load();
}

bool DorvMemory::set(const QByteArray& name, const QByteArray& value)
{
    if (!accept(name, value))
        return false;
    store();
    return true;
}

bool DorvMemory::accept(const QByteArray& name, const QByteArray& value)
{
    if (name == CHANNEL && fits(value, CHANNEL_FORM)) {
        values[name + value.left(value.indexOf(','))] = value;
        return true;
    }
    const Setting* setting = find_setting(name);
    if (!setting || !fits(value, setting->form))
        return false;
    values[name] = value;
    return true;
}

std::optional<QByteArray> DorvMemory::told(const QByteArray& name, const QByteArray& access) const
{
    const Setting* setting = find_setting(name);
    if (!setting || access != setting->access)
        return {};
    // A key is returned without the word before it, which says its kind.
    const QByteArray value = values[name];
    return access.isEmpty() ? value : value.mid(value.lastIndexOf(',') + 1);
}

void DorvMemory::reset_to_factory()
{
    values.clear();
    for (const Setting& setting : SETTINGS)
        values[setting.name] = setting.factory;
    store();
}

void DorvMemory::load()
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(path, file.errorString());
    int number = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        ++number;
        const int sign = int(line.indexOf('='));
        QByteArray name = line.left(sign);
        if (name.startsWith(CHANNEL) && name.size() > 2 &&
            isdigit(static_cast<unsigned char>(name[2])))
            name = CHANNEL;
        if (!line.isEmpty() && !accept(name, line.mid(sign + 1)))
            fail(path, QStringLiteral("line %1, \"%2\", is not a setting of this module")
                           .arg(number)
                           .arg(QString::fromLatin1(line)));
    }
}

void DorvMemory::store() const
{
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        fail(path, file.errorString());
    for (auto it = values.begin(); it != values.end(); ++it)
        file.write(it.key() + '=' + it.value() + '\n');
    if (!file.commit())
        fail(path, file.errorString());
}
