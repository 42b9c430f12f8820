// The settings of a Dorv module by name: what each takes, and which operations set and read it.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>
#include <cstdint>

class DorvCfg;

// One value of a setting, of one of three kinds.
struct DorvField
{
    QString name;
    std::int64_t least = 0; // a number from least to most
    std::int64_t most = 0;
    QStringList words = {}; // or one of these; its number is its place; none is empty
    int bytes = 0;          // or so many bytes in hexadecimal
    int base = 10;          // how a number is shown
};

struct DorvValues
{
    QVector<std::int64_t> numbers; // of numbers and words, in order
    QByteArray bytes;
};

// What an operation comes to is its outcome, in DorvCfg.
struct DorvSetting
{
    QString name;
    QVector<DorvField> fields; // what set takes
    QString meaning;
    void (*set)(DorvCfg& cfg, const DorvValues& values) = nullptr;
    // Reads the fields, or the first of them; null for a setting that can't be read.
    void (*get)(DorvCfg& cfg, DorvValues& values) = nullptr;
};

const QVector<DorvSetting>& dorv_settings();
const DorvSetting* find_dorv_setting(const QString& name);

// "BAUD DATA none|even STOP"
QString form_of(const DorvSetting& setting);
// The values as words that mean them.
QStringList dorv_words(const DorvSetting& setting, const DorvValues& values);
