// The control lines of a serial port, as bits.
//
//   bit   name    line                  9-pin   direction
//   0x01  LS_CTS  clear to send         8       in
//   0x02  LS_DSR  data set ready        6       in
//   0x04  LS_DCD  data carrier detect   1       in
//   0x08  LS_RI   ring indicator        9       in
//   0x10  LS_RTS  request to send       7       out
//   0x20  LS_DTR  data terminal ready   4       out
#pragma once

#include <optional>

enum LineStatus : int {
    LS_CTS = 0x01,
    LS_DSR = 0x02,
    LS_DCD = 0x04,
    LS_RI = 0x08,
    LS_RTS = 0x10,
    LS_DTR = 0x20,
};

// What the lines out are to be from the open on; one without a value stays as the system has it,
// which is on as a rule.
struct LinesAtOpen
{
    std::optional<bool> dtr;
    std::optional<bool> rts;
};
