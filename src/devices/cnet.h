// A cnet radio device at the host's line, with other devices in reach of its radio.
#pragma once

#include "devices/module.h"

#include <QVector>
#include <cstdint>

struct CnetDevice
{
    int channel = 9; // 9 to 30
    int rate = 0;    // 0: 250 kbps, 1: 500 kbps, 2: 1 Mbps
    std::uint16_t address = 0;
    std::uint64_t long_address = 0;
    std::int8_t signal = 0; // dBm
    std::int8_t value = 0;
    std::int8_t second_value = 0;
    QByteArray configuration; // 52 bytes
};

// The device of that place and address, with its other properties made from the address.
CnetDevice cnet_device(int channel, int rate, std::uint16_t address);
// As many devices, scattered over channels and rates.
QVector<CnetDevice> cnet_neighbourhood(int count, std::uint64_t seed);

// Configuration frames lie between 0xAB and 0xBA, with the command after the head; their requests
// are in cnet.cpp. The contents that the device is free to choose:
//
//   search answer           short address (2), signal, channel, rate
//   search answer, long     long address (8), then as above
//   local record            short address (2), channel, rate, version (3)
//   local record, long      long address (8), then as above
//
// Data frames lie between 0xAA and 0x55; the device they are for sends their payload back.
class Cnet : public Module
{
public:
    Cnet(const CnetDevice& local, const QVector<CnetDevice>& neighbours, Journal journal = {});

    int request_size(const QByteArray& heard, bool silence) const override;
    Answer answer(const QByteArray& request) override;

private:
    Answer configure(const QByteArray& request);
    Answer pass_data(const QByteArray& request);
    Answer search(std::uint8_t command, const QByteArray& arguments) const;
    QByteArray local_record(bool with_long_address) const;
    QByteArray set_place(const QByteArray& arguments);
    CnetDevice* reached(const QByteArray& address);
    void tell(const QString& text) const;

    CnetDevice local;
    QVector<CnetDevice> neighbours;
    Journal journal;
};
