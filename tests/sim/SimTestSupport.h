#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <memory>
#include <string>

#include "sim/SimulatedProgrammer.h"

namespace rk31::sim::test {

inline std::string Text(const QStringList& lines) {
    return lines.join(u'\n').toStdString();
}

// One DAC step of the 12-bit output, in percent.
inline constexpr double kDacStep = 100.0 / 4095.0;

// A device object on a box, with its channel open on the programmer's port.
struct Bench {
    explicit Bench(SimConfig config = {})
        : box(std::make_shared<SimulatedBox>(config)), device(CreateSimulatedDevice(box)) {
        std::int32_t failed = 0;
        device->OpenChannel(QVariant(std::int32_t{config.programmerPort}), failed);
        EXPECT_EQ(failed, 0);
    }

    // A fresh object on the same box, as Disconnect and Connect give.
    void reconnect() {
        device->CloseChannel(-1);
        device = CreateSimulatedDevice(box);
        std::int32_t failed = 0;
        device->OpenChannel(QVariant(std::int32_t{box->config.programmerPort}), failed);
        EXPECT_EQ(failed, 0);
    }

    std::int32_t powerOnAndEnterOwi(std::int16_t part) {
        std::int32_t status = 0;
        std::int32_t result = 0;
        device->PowerOnChip(part, status);
        device->EnterOWIMode(part, result);
        return result;
    }

    std::int32_t read(std::int16_t part, std::int32_t address) {
        std::shared_ptr<MemoryAccess> memory;
        device->GetMemoryAccess(memory);
        std::int32_t data = 0;
        memory->ReadMemory(part, address, data);
        return data;
    }

    float measure(std::int16_t part) {
        float value = 0;
        device->MeasureOutput(part, 1, value);
        return value;
    }

    std::shared_ptr<SimulatedBox> box;
    std::shared_ptr<QZ7734Device> device;
};

}  // namespace rk31::sim::test
