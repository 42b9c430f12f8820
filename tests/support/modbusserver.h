// A Modbus RTU device on the far side of a pseudo-terminal, played by libmodbus.
#pragma once

#include "pty.h"

#include <atomic>
#include <modbus.h>
#include <thread>

class ModbusServer
{
public:
    static constexpr int REGISTERS = 16;

    // Registers may be set until the first request, and read while none is under way.
    ModbusServer(const Pty& pty, int address)
    {
        constexpr unsigned LOOK_AROUND_US = 50000; // how long a request is awaited at a stretch
        if (modbus_set_slave(context, address) != 0 ||
            modbus_set_socket(context, pty.master_fd()) != 0 ||
            modbus_set_indication_timeout(context, 0, LOOK_AROUND_US) != 0)
            throw std::runtime_error("no Modbus server");
        thread = std::thread(&ModbusServer::serve, this);
    }
    ~ModbusServer()
    {
        stop = true;
        thread.join();
        modbus_mapping_free(mapping);
        modbus_free(context);
    }

    std::uint16_t& reg(int index) { return mapping->tab_registers[index]; }

private:
    void serve()
    {
        std::uint8_t query[MODBUS_RTU_MAX_ADU_LENGTH];
        while (!stop) {
            // 0 for another device, below 0 for damage and for silence.
            if (const int length = modbus_receive(context, query); length > 0)
                modbus_reply(context, query, length, mapping);
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    modbus_t* const context = modbus_new_rtu("none", 115200, 'N', 8, 1);
    modbus_mapping_t* const mapping = modbus_mapping_new(0, 0, REGISTERS, 0);
    std::atomic<bool> stop = false;
    std::thread thread;
};
