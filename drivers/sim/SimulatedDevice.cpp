#include <QStringList>
#include <variant>

#include "rk31/DeviceError.h"
#include "rk31/DeviceTraffic.h"
#include "sim/SimulatedDevice.h"

namespace rk31::sim {

namespace {

QString dec(std::int64_t v) {
    return QString::number(v);
}

QString hex(std::int32_t v) {
    return QStringLiteral("&H") + QString::number(static_cast<std::uint32_t>(v), 16).toUpper();
}

QString call(const char* op, const QStringList& args = {}) {
    return QString::fromLatin1(op) + u'(' + args.join(QStringLiteral(", ")) + u')';
}

// What a device object and the access objects it hands out share: the box and whether this
// object's channel is open.
struct Link {
    std::shared_ptr<SimulatedBox> box;
    bool open = false;

    // Records the call, takes the box's time for it, and refuses it on a closed channel.
    SimulatedBox& begin(const QString& traced) const {
        box->record(traced);
        box->delay();
        if (!open) {
            throw DeviceError(QStringLiteral("Programmer is not connected!"));
        }
        return *box;
    }
};

void requirePart(int part) {
    if (!SimulatedBox::IsPart(part)) {
        throw DeviceError(QStringLiteral("Part index %1 is out of range!").arg(part));
    }
}

class SimMemory : public MemoryAccess {
  public:
    explicit SimMemory(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

    void WriteMemory(std::int16_t part, std::int32_t address, std::int32_t data) override {
        SimulatedBox& box =
            m_link->begin(call("WriteMemory", {dec(part), hex(address), hex(data)}));
        if (SimulatedBox::IsPart(part)) {
            box.writeMemory(part, address, data);
        }
    }
    void ReadMemory(std::int16_t part, std::int32_t address, std::int32_t& data) override {
        SimulatedBox& box = m_link->begin(call("ReadMemory", {dec(part), hex(address)}));
        data = SimulatedBox::IsPart(part) ? box.readMemory(part, address) : kReadError;
    }
    void SetSolverParameter(std::int16_t part, std::int16_t id, const SolverValue& value,
                            std::int16_t mode, std::int32_t& failed) override {
        SimulatedBox& box = m_link->begin(
            call("SetSolverParameter", {dec(part), dec(id), SolverValueText(value), dec(mode)}));
        const double v = std::visit([](auto x) { return static_cast<double>(x); }, value);
        const bool ok = SimulatedBox::IsPart(part) && box.setSolverParameter(part, id, v, mode);
        failed = ok ? 0 : 1;
    }

  private:
    std::shared_ptr<Link> m_link;
};

class SimSolver : public SolverAccess {
  public:
    explicit SimSolver(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

    void CommLock(std::int16_t part, std::int32_t& failed) override {
        SimulatedBox& box = m_link->begin(call("CommLock", {dec(part)}));
        failed = SimulatedBox::IsPart(part) && box.commLock(part) ? 0 : 1;
    }
    void WriteBufferToDevice(std::int16_t part, std::int32_t& code) override {
        code = m_link->begin(call("WriteBufferToDevice", {dec(part)})).writeBuffer(part);
    }
    void ClearSolverSettings(std::int16_t part, std::int32_t& failed) override {
        SimulatedBox& box = m_link->begin(call("ClearSolverSettings", {dec(part)}));
        failed = SimulatedBox::IsPart(part) && box.clearSolver(part) ? 0 : 1;
    }

  private:
    std::shared_ptr<Link> m_link;
};

class SimDevice : public QZ7734Device {
  public:
    explicit SimDevice(std::shared_ptr<SimulatedBox> box)
        : m_link(std::make_shared<Link>(Link{std::move(box), false})) {}

    void OpenChannel(const QVariant& port, std::int32_t& failed) override {
        SimulatedBox& box = *m_link->box;
        box.record(call("OpenChannel", {port.toString()}));
        box.delay();
        bool isNumber = false;
        const int number = port.toInt(&isNumber);
        m_link->open = isNumber && number == box.config.programmerPort && !box.config.channelFail;
        failed = m_link->open ? 0 : 1;
    }
    void CloseChannel(std::int32_t channel) override {
        m_link->box->record(call("CloseChannel", {dec(channel)}));
        m_link->box->delay();
        m_link->open = false;
    }
    void ProgramEEPROM(std::int16_t part, std::int32_t& failed) override {
        SimulatedBox& box = begin("ProgramEEPROM", part);
        failed = SimulatedBox::IsPart(part) && box.programEeprom(part) ? 0 : 1;
    }
    void MeasureOutput(std::int16_t part, std::int16_t one, float& value) override {
        SimulatedBox& box = m_link->begin(call("MeasureOutput", {dec(part), dec(one)}));
        requirePart(part);
        // The part argument picks the die; SelectOutputChannel's routing is kept on the box for
        // whoever wants to check it, but a caller that skipped it still reads the right die.
        value = box.output(part);
    }
    void MeasureVDD(std::int16_t part, float& vdd) override {
        SimulatedBox& box = begin("MeasureVDD", part);
        vdd = SimulatedBox::IsPart(part) || part == 3 ? box.measureVdd(part) : -200.0f;
    }
    void GetMemoryAccess(std::shared_ptr<MemoryAccess>& object) override {
        m_link->begin(call("GetMemoryAccess"));
        if (!m_memory) {
            m_memory = std::make_shared<SimMemory>(m_link);
        }
        object = m_memory;
    }
    void ReadAngle(std::int16_t part, float& angle) override {
        SimulatedBox& box = begin("ReadAngle", part);
        requirePart(part);
        // The box answers from the sensor's last conversion whatever mode the die is in: the
        // windows rely on an answer, and Set point A after a failed preparation shows it.
        angle = static_cast<float>(box.magnetAngle());
        // A Single may round an angle just below 360 up to 360.
        if (angle >= 360.0f) {
            angle = 0.0f;
        }
    }
    void GetSolverAccess(std::shared_ptr<SolverAccess>& object) override {
        m_link->begin(call("GetSolverAccess"));
        if (!m_solver) {
            m_solver = std::make_shared<SimSolver>(m_link);
        }
        object = m_solver;
    }
    void EnterOWIMode(std::int16_t part, std::int32_t& result) override {
        SimulatedBox& box = begin("EnterOWIMode", part);
        result = SimulatedBox::IsPart(part) || part == 3 ? box.enterOwi(part) : 2;
    }
    void ExitOWIMode(std::int16_t part, std::int32_t& status) override {
        perPart("ExitOWIMode", part, status, &SimulatedBox::exitOwi);
    }
    void PowerOnChip(std::int16_t part, std::int32_t& status) override {
        perPart("PowerOnChip", part, status, &SimulatedBox::powerOn);
    }
    void SelectOutputChannel(std::int16_t part, std::int32_t& status) override {
        SimulatedBox& box = begin("SelectOutputChannel", part);
        status = SimulatedBox::IsPart(part) ? 0 : 1;
        if (status == 0) {
            box.selectedChannel = part;
        }
    }
    void PowerOffChip(std::int16_t part, std::int32_t& status) override {
        perPart("PowerOffChip", part, status, &SimulatedBox::powerOff);
    }
    void EnterADCMode(std::int16_t part, std::int32_t& status) override {
        perPart("EnterADCMode", part, status, &SimulatedBox::enterAdc);
    }
    void GetDACCalibration(std::int16_t part, float& k0, float& b0, float& k1, float& b1,
                           std::int32_t& status) override {
        // Every call reports both dies' pairs, whichever part was asked for.
        const SimulatedBox& box = begin("GetDACCalibration", part);
        k0 = box.dies[0].k;
        b0 = box.dies[0].b;
        k1 = box.dies[1].k;
        b1 = box.dies[1].b;
        status = box.config.dacStatus;
    }
    void GetHardwareVersion(std::int32_t& major, std::int32_t& minor, std::int32_t& build,
                            std::int32_t& failed) override {
        const SimulatedBox& box = m_link->begin(call("GetHardwareVersion"));
        major = box.hardwareVersion[0];
        minor = box.hardwareVersion[1];
        build = box.hardwareVersion[2];
        failed = box.config.versionFail ? 1 : 0;
    }
    void SetOutputMode(std::int16_t part, std::int16_t outputMode, std::int16_t pwmFrequency,
                       std::int16_t pwmPolarity, std::int32_t& failed) override {
        SimulatedBox& box = m_link->begin(call(
            "SetOutputMode", {dec(part), dec(outputMode), dec(pwmFrequency), dec(pwmPolarity)}));
        const bool ok = SimulatedBox::IsPart(part) &&
                        box.setOutputMode(part, outputMode, pwmFrequency, pwmPolarity);
        failed = ok ? 0 : 1;
    }

  private:
    SimulatedBox& begin(const char* op, std::int16_t part) {
        return m_link->begin(call(op, {dec(part)}));
    }
    void perPart(const char* op, std::int16_t part, std::int32_t& status,
                 void (SimulatedBox::*change)(int)) {
        SimulatedBox& box = begin(op, part);
        status = SimulatedBox::IsPart(part) ? 0 : 1;
        if (status == 0) {
            (box.*change)(part);
        }
    }

    std::shared_ptr<Link> m_link;
    std::shared_ptr<MemoryAccess> m_memory;
    std::shared_ptr<SolverAccess> m_solver;
};

}  // namespace

std::shared_ptr<QZ7734Device> CreateSimulatedDevice(std::shared_ptr<SimulatedBox> box) {
    return std::make_shared<SimDevice>(std::move(box));
}

}  // namespace rk31::sim
