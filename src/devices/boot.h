// A module with an application and boot code, whose firmware can be replaced.
#pragma once

#include "devices/framing.h"
#include "devices/module.h"
#include "devices/romimage.h"

#include <array>
#include <cstdint>

// Bytes of name and hard info that fit into the record of 128 bytes that hosts expect.
constexpr int BOOT_RECORD_ROOM = 128 - 12 - 1;

struct BootSettings
{
    QString image;             // file of the program memory; empty to keep it in memory alone
    int rom_size = 1 << 20;    // bytes of program memory
    std::uint16_t page = 4096; // bytes that are checked at a time
    std::uint16_t mtu = 1024;  // largest payload of a data packet
    QByteArray name = "M1";    // empty: the module does not report it
    std::array<std::uint8_t, 5> version = {1, 0, 0, 0, 0};
    QByteArray hard_info;
    bool in_boot = false; // no application is there: the boot code runs from the start
    Framing framing;
};

//   request              bytes                                          reply
//   information          'a'                                            record, see boot.cpp
//   enter boot code      'b'                                            none
//   reboot               'c'                                            none
//   check a block        'd', offset (4), size (4), CRC-32 (4), final   'd', status
//   write                'e', offset (4), payload                       'e', status
//
// Numbers are big-endian. The application answers 'a' and 'b' alone. Status 0 is yes.
class Boot : public Module
{
public:
    // Throws std::runtime_error like RomImage.
    explicit Boot(const BootSettings& settings, Journal journal = {});

    int request_size(const QByteArray& heard, bool silence) const override;
    Answer answer(const QByteArray& request) override;
    void restart() override;

private:
    QByteArray information() const;
    QByteArray check(const QByteArray& request);
    QByteArray write(const QByteArray& request);
    void tell(const QString& text) const;

    BootSettings settings;
    Journal journal;
    RomImage rom;
    bool in_boot;
    bool application_good; // nothing has been written since it was last found whole
    bool stay_in_boot = false;
};
