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
