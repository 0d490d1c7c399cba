// The smallest driver there is: it provides the device, and the device has no box behind it.
// Built in this tree for the catalog tests and outside it against the installed package.
#include <rk31/DeviceDriver.h>
#include <rk31/DeviceError.h>
#include <QObject>

namespace {

class NoBox : public rk31::QZ7734Device {
  public:
    void OpenChannel(const QVariant& port, std::int32_t&) override {
        throw rk31::DeviceError(QStringLiteral("example driver: no box on COM") + port.toString());
    }
    void CloseChannel(std::int32_t) override {}
    void ProgramEEPROM(std::int16_t, std::int32_t&) override { none(); }
    void MeasureOutput(std::int16_t, std::int16_t, float&) override { none(); }
    void MeasureVDD(std::int16_t, float&) override { none(); }
    void GetMemoryAccess(std::shared_ptr<rk31::MemoryAccess>&) override { none(); }
    void ReadAngle(std::int16_t, float&) override { none(); }
    void GetSolverAccess(std::shared_ptr<rk31::SolverAccess>&) override { none(); }
    void EnterOWIMode(std::int16_t, std::int32_t&) override { none(); }
    void ExitOWIMode(std::int16_t, std::int32_t&) override { none(); }
    void PowerOnChip(std::int16_t, std::int32_t&) override { none(); }
    void SelectOutputChannel(std::int16_t, std::int32_t&) override { none(); }
    void PowerOffChip(std::int16_t, std::int32_t&) override { none(); }
    void EnterADCMode(std::int16_t, std::int32_t&) override { none(); }
    void GetDACCalibration(std::int16_t, float&, float&, float&, float&, std::int32_t&) override {
        none();
    }
    void GetHardwareVersion(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&) override {
        none();
    }
    void SetOutputMode(std::int16_t, std::int16_t, std::int16_t, std::int16_t,
                       std::int32_t&) override {
        none();
    }

  private:
    [[noreturn]] static void none() {
        throw rk31::DeviceError(QStringLiteral("example driver: no box"));
    }
};

}  // namespace

class ExampleDriver : public QObject, public rk31::DeviceDriver {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID RK31_DEVICE_DRIVER_IID FILE "example.json")
    Q_INTERFACES(rk31::DeviceDriver)

  public:
    std::shared_ptr<rk31::QZ7734Device> create(const QString&) override {
        return std::make_shared<NoBox>();
    }
};

#include "ExampleDriver.moc"
