// The keys of the configuration file that the window reads and writes, each with its value when
// absent.
#pragma once

#include "linkcfg/setting.h"

// In the root file, which says where everything else is.
inline const Setting<QString> CFG_FILE = {"cfg_file", "tarnwick.ini"};
constexpr char ROOT_FILE[] = "tarnwick.ini";

// Group "global" of the current file.
inline const Setting<QString> LANGUAGE = {"language", "zh_CN"};

// Group "serial_tool".
constexpr Setting<bool> DISPLAY_TX = {"display_tx", false};
constexpr Setting<bool> DISPLAY_TIME = {"display_time", false};
constexpr Setting<bool> FRAME_MODE = {"frame_mode", false};
constexpr Setting<int> FRAME_INTERVAL = {"frame_interval", 5}; // ms
constexpr Setting<bool> HEX_DISPLAY = {"hex_display", false};
constexpr Setting<bool> AUTO_CLR = {"auto_clr", false};
constexpr Setting<int> AUTO_CLR_THRESHOLD = {"auto_clr_threshold", 100}; // lines
constexpr Setting<bool> HEX_MODE_SEND = {"hex_mode_send", false};
constexpr Setting<int> SEND_INTERVAL = {"send_interval", 10}; // ms
constexpr Setting<int> SEND_COUNT = {"send_count", 0};
constexpr Setting<bool> RAW_TEXT = {"raw_text", false};
constexpr Setting<int> SEND_IN_TURN_INTERVAL = {"send_in_turn_interval", 20}; // ms
inline const Setting<QString> SAVE2FILE = {"save2file", QString()};

// The two texts of the send area, one for each mode.
inline Setting<QString> send_text_setting(bool hex_mode)
{
    return {hex_mode ? "hex" : "ascii", QString()};
}

// Group "window".
inline const Setting<QByteArray> GEOMETRY = {"geometry", QByteArray()};
inline const Setting<QByteArray> STATE = {"state", QByteArray()};

// Of each row of the array "strings"; a row leaves out what is empty or false.
constexpr char STRINGS[] = "strings";
constexpr Setting<bool> IN_TURN = {"in_turn", false};
inline const Setting<QString> ALIAS = {"alias", QString()};
constexpr Setting<bool> IS_HEX = {"ishex", false};
inline const Setting<QString> VALUE = {"value", QString()};
