// Error codes of the device tools, beside those of links and framers.
#pragma once

// Negative errno numbers in the numbering of the Windows C runtime.
//
//   TOOL_FAILED           -1   the operation failed; or the link isn't open
//   TOOL_BAD_REPLY        -5   an answer that isn't one to the request, or can't be worked with
//   TOOL_REFUSED         -11   the device refused a data packet
//   TOOL_BUSY            -16   a run of this tool is under way
//   TOOL_NO_LINK         -19   no link below the tool
//   TOOL_WRONG_FIRMWARE  -22   the firmware file belongs to another module
//   TOOL_ABORTED        -105   abort() was called
//   TOOL_NO_REPLY       -138   no answer in time
enum ToolError : int {
    TOOL_FAILED = -1,
    TOOL_BAD_REPLY = -5,
    TOOL_REFUSED = -11,
    TOOL_BUSY = -16,
    TOOL_NO_LINK = -19,
    TOOL_WRONG_FIRMWARE = -22,
    TOOL_ABORTED = -105,
    TOOL_NO_REPLY = -138,
};
