// The keys of the workbench's INI file, each with its value when absent. The link dialog and the
// pages keep groups of their own in the same file.
#pragma once

#include "linkcfg/setting.h"

inline const Setting<QString> LANGUAGE = {"workbench/language", QString()}; // empty: the desktop's
inline const Setting<QString> PALETTE = {"workbench/palette", QString()};   // light, dark, or so
inline const Setting<QString> LINK = {"workbench/link", "serial:/dev/ttyUSB0,115200,8N1"};
inline const Setting<QString> FRAME = {"workbench/frame", "crc16"};
constexpr Setting<int> TIMEOUT = {"workbench/timeout", 500}; // ms
constexpr Setting<bool> LOG = {"workbench/log", true};
inline const Setting<QString> FIRMWARE = {"workbench/firmware", QString()};
inline const Setting<QByteArray> GEOMETRY = {"workbench/geometry", QByteArray()};
inline const Setting<QByteArray> STATE = {"workbench/state", QByteArray()};
constexpr Setting<bool> SEARCH_DORV = {"search/dorv", false};
inline const Setting<QString> SEARCH_CHANNELS = {"search/channels", "9-30"};
constexpr Setting<int> SEARCH_RATES = {"search/rates", 7}; // a bit for each
inline const Setting<QString> SEARCH_TARGET = {"search/target", QString()};
constexpr Setting<bool> SEARCH_LONG = {"search/long", false};
constexpr Setting<int> SEARCH_DURATION = {"search/duration", 5}; // s
constexpr Setting<bool> EXCHANGE_TEXT = {"exchange/text", false};
inline const Setting<QString> EXCHANGE_PAYLOAD = {"exchange/payload", QString()};
constexpr Setting<int> EXCHANGE_MOST = {"exchange/most", 256}; // bytes
