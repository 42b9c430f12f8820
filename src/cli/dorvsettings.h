// The settings of a Dorv module by name: what each takes, and which operations set and read it.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

class DorvCfg;

// One value of a setting, of one of three kinds.
struct DorvField
{
    const char* name;
    qint64 least = 0; // a number from least to most
    qint64 most = 0;
    const char* words = nullptr; // or one of these, split by |; its number is its place
    int bytes = 0;               // or so many bytes in hexadecimal
    int base = 10;               // how a number is shown
};

struct DorvValues
{
    QVector<qint64> numbers; // of numbers and words, in order
    QByteArray bytes;
};

struct DorvSetting
{
    const char* name;
    QVector<DorvField> fields; // what set takes
    const char* meaning;
    int (*set)(DorvCfg& cfg, const DorvValues& values);
    // Reads the fields, or the first of them; null when the module doesn't tell.
    int (*get)(DorvCfg& cfg, DorvValues& values) = nullptr;
};

const QVector<DorvSetting>& dorv_settings();
const DorvSetting* find_dorv_setting(const QString& name);

// "BAUD DATA none|even STOP"
QString form_of(const DorvSetting& setting);
// The values that the words stand for. Throws Failure of usage.
DorvValues parse_dorv_values(const DorvSetting& setting, const QStringList& words);
// The values as parse_dorv_values takes them.
QStringList dorv_words(const DorvSetting& setting, const DorvValues& values);
