// Carries payload through a radio module that speaks AT commands: down as a send command, up as a
// report line of the module.
#pragma once

#include "framers/qframer.h"

#include <optional>
#include <string_view>

class QLink;

// To the module; it replies with one line, good when the text "ok" is in it:
//
//   offset   size   field
//   0        c      send command
//   c        1      "="
//   c + 1    d      n as decimal text
//   ...      1      carriage return, 0D
//   ...      n      payload
struct DorvCommand
{
    // All of a frame but command and payload, with the longest number that an int has.
    static constexpr int OVERHEAD_MAX = 12;

    std::string_view command;
    std::string_view payload;

    // Writes command and payload and at most OVERHEAD_MAX bytes around them to frame; the bytes
    // written.
    int build(char* frame) const;
};

// From the module, without being asked. Anything may precede the name, and one separator
// byte of any value follows it.
//
//   counted       name, separator, n as decimal text; n payload bytes follow the line
//   hexadecimal   name, separator, rssi, ",", snr, ",", payload in hexadecimal
//   text          name, separator, a field, ",", a field, ",", payload, two closing bytes
struct DorvReport
{
    enum Fault { NONE, NO_NAME, NO_RSSI, NO_SNR };

    Fault fault = NONE;
    std::string_view payload; // what follows the second comma, closing bytes included

    // The hexadecimal and the text form. The payload points into line.
    static DorvReport parse(std::string_view line, std::string_view name);
    // The n of the counted form, cut to what an int holds; nothing when name isn't there.
    static std::optional<int> parse_count(std::string_view line, std::string_view name);
};

// The forms by mode:
//
//   mode     send command      report
//   0        "at+mactx"        "+macrx", counted
//   1        "at+pmactx"       "+pmacrx", counted
//   2        "at+radiotx"      "+radiorx", counted
//   other    "at+mac_send"     "+data", counted
//   raw      "at+radiotxraw"   "+radiorx", hexadecimal; whatever the mode is
//
// Bytes travel through the framer, lines come straight from the link, which is normally the one
// under that framer. Neither is owned, and nobody else reads the link meanwhile. All waiting is the
// link's, so that its readline should be one that waits. Every failure gives 0, never a negative
// number; with verbose the log has commands, replies and reports.
class QFramerDorv : public QFramer
{
public:
    // The longest reply that is taken whole, with its NUL.
    static constexpr int REPLY_SIZE = 64;
    // Room for a report line around the payload of a read.
    static constexpr int LINE_ROOM = 64;

    // The framer below must return from write the size it was given, as QFramerNull does.
    explicit QFramerDorv(QFramer* framer);

    void framer_set(QFramer* framer);
    // Set it before the first write or read.
    void link_set(QLink* link);
    void verbose_set(bool verbose);
    void raw_set(bool raw);
    // 2 after construction.
    void mode_set(int mode);

    void flush() override;
    // nbytes when the module said "ok", else 0.
    int write(const char* buffer, int nbytes) override;
    // Waits for one report line. The payload bytes stored, else 0. What a report announces beyond
    // nbytes stays in the link. The line must fit into nbytes + LINE_ROOM - 1 bytes: in the raw
    // form, where each byte takes two characters, ask for twice the payload.
    int read(char* buffer, int nbytes) override;

    // write and read in the form of the mode, or in the raw one.
    int mode_write(const char* buffer, int nbytes);
    int radio_raw_write(const char* buffer, int nbytes);
    int mode_read(char* buffer, int nbytes);
    int radio_raw_read(char* buffer, int nbytes);

    // The steps of those; command and name end with a NUL.
    int command_write(const char* command, const char* buffer, int nbytes);
    int counted_read(const char* name, char* buffer, int nbytes);
    int hex_read(const char* name, char* buffer, int nbytes);
    // Stores at most nbytes, but returns the length of the whole payload.
    int text_read(const char* name, char* buffer, int nbytes);

private:
    int read_line(char* line, int size);
    template <typename Use> int with_report(int nbytes, const Use& use);
    void tell(const QString& text);

    QFramer* framer = nullptr;
    QLink* link = nullptr;
    bool raw = false;
    int mode = 2;
    bool verbose = false;
};
