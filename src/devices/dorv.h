// A radio module that takes AT commands, each ended by a carriage return.
#pragma once

#include "devices/dorvmemory.h"
#include "devices/module.h"

struct DorvSettings
{
    QString file;         // of the remembered settings; empty to forget them at the end
    bool partner = false; // a module in reach sends every payload back
    int neighbours = 0;   // modules in reach that announce themselves
};

//   command                                    answer
//   +++, at                                    ok
//   at+NAME=VALUE                              ok, or error
//   at+NAME=?                                  the value
//   at+reboot, at+def                          ok
//   at+rssi=0xADDRESS                          +rssi,dBm
//   at+pmactx=ucast,ADDRESS,communication quality    ok, then seven fields
//   at+radiotx=N, radiotxraw, pmactx, mactx, mac_send, with N bytes after it  ok
//
// Every line of an answer ends with CR LF. A payload from the radio comes as "+radiorx=N" (or
// +pmacrx, +macrx, +data) with N bytes after it, or as "+radiorx=dBm,SNR,HEX".
class Dorv : public Module
{
public:
    // Throws std::runtime_error like DorvMemory.
    explicit Dorv(const DorvSettings& settings, Journal journal = {});

    int request_size(const QByteArray& heard, bool silence) const override;
    Answer answer(const QByteArray& request) override;
    Time next_report(Time now) const override;
    QByteArray report(Time now) override;

private:
    Answer obey(const QByteArray& command, const QByteArray& payload);
    Answer set_or_tell(const QByteArray& name, const QByteArray& value);
    Answer send(const QByteArray& command, const QByteArray& payload) const;
    void tell(const QString& text) const;

    DorvSettings settings;
    Journal journal;
    DorvMemory memory;
    int announced = 0;
    Time announcement{}; // when the next one is due
};
