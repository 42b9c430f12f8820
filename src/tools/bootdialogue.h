// Requests and records of the dialogue with a module's boot code: values only, no framer.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

// Each request and each reply is one frame. Numbers are big-endian; offsets count from the start of
// the firmware file.
//
//   byte  request                                                      reply
//   'a'   get device information                                       a DeviceInfo
//   'b'   enter boot mode                                              none is read
//   'c'   reboot                                                       none is read
//   'd'   verify a block: offset 4, size 4, CRC 4, final 1             'd', status: 0 it matches
//   'e'   write data: offset 4, payload                                'e', status: 0 accepted
//
// final is 0 for one page and 1 for the whole file. The CRC is crc32 as the routine leaves it.
enum BootCommand : std::uint8_t {
    BOOT_INFO = 'a',
    BOOT_ENTER = 'b',
    BOOT_REBOOT = 'c',
    BOOT_VERIFY = 'd',
    BOOT_WRITE = 'e',
};

constexpr int BOOT_STATUS_SIZE = 2;
constexpr int BOOT_INFO_MIN = 12;
constexpr int BOOT_INFO_MAX = 128;

QByteArray boot_verify_request(std::uint32_t crc, std::uint32_t offset, std::uint32_t size,
                               bool final);
QByteArray boot_write_request(const void* data, std::uint32_t offset, std::uint32_t n);

// The device information record, 12 to 128 bytes:
//
//   offset  size  field
//      0      1   'a'
//      1      1   0: the application runs; any other: the boot code does
//      2      1   flags; bit 0: hard info follows the name
//      3      5   version
//      8      2   ROM page size, bytes
//     10      2   MTU: most payload bytes of a write
//     12   L + 1  module name, Latin-1, ended by a NUL; absent from a record of 12 bytes
//   13 + L   ...  hard info, opaque
//
// A name without a NUL ends with the record. Hard info for which the record has no room counts as
// absent; right after the name's NUL there is room for 0 bytes of it.
struct DeviceInfo
{
    bool in_boot = false;
    std::uint8_t version[5] = {};
    std::uint16_t rom_page_size = 0;
    std::uint16_t mtu = 0;
    std::optional<QString> name;
    const std::uint8_t* hard_info = nullptr; // points into the record
    int hard_info_size = 0;
};
// record has at least 12 bytes.
DeviceInfo device_info(const std::uint8_t* record, int size);

// What runs on the device, as in "M1 V1.02.030405 BOOT".
QString soft_info(const DeviceInfo& info);

// As in "hard info (9 bytes): 01 02 03 0a"; a byte that isn't there shows as "--". The text comes
// with its five places, %1 to %5.
QString hard_info_text(const QString& text, const std::uint8_t* info, int size);

// Whether a firmware file of this name, without its folder, may go into the module: it begins with
// the module's name and an underscore. Modules with "boot" in their names take any.
bool firmware_fits(const QString& file_name, const QString& module_name);
