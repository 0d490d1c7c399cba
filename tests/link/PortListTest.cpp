#include <gtest/gtest.h>

#include <map>
#include <set>

#include "link/PortList.h"
#include "link/PortProber.h"

using namespace rk31;

namespace {

// Ports not named open fine; `results` names the failing ones, `heldHere` those this control
// holds open already.
class FakePorts : public PortProber {
  public:
    std::map<int, int> results;
    std::set<int> heldHere;
    std::set<int> openNow;

    bool isOpenHere(int port) const override { return heldHere.contains(port); }
    int open(int port) override {
        const int result = results.contains(port) ? results.at(port) : 0;
        if (result == 0) {
            openNow.insert(port);
        }
        return result;
    }
    void close(int port) override { openNow.erase(port); }
};

std::map<int, int> allFailExcept(std::map<int, int> exceptions) {
    std::map<int, int> results;
    for (int port = 1; port <= 16; ++port) {
        results[port] = exceptions.contains(port) ? exceptions.at(port) : 8002;
    }
    return results;
}

}  // namespace

TEST(RefreshPortList, ListsWhatOpensWhatIsHeldAndWhatThisControlHolds) {
    const struct {
        const char* name;
        std::map<int, int> results;
        std::set<int> heldHere;
        QStringList expected;
    } cases[] = {
        {"held port between two free ones",
         allFailExcept({{1, 0}, {2, kPortAlreadyOpen}, {3, 0}}),
         {},
         {"COM1", "COM2", "COM3"}},
        {"held last port is never listed", allFailExcept({{16, kPortAlreadyOpen}}), {}, {}},
        {"held 15 lands before free 16",
         allFailExcept({{15, kPortAlreadyOpen}, {16, 0}}),
         {},
         {"COM15", "COM16"}},
        {"other errors are left out", allFailExcept({{4, 8002}, {5, 8012}}), {}, {}},
        {"held by this control", allFailExcept({}), {7, 12}, {"COM7", "COM12"}},
        {"everything free",
         {},
         {},
         {"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9", "COM10", "COM11",
          "COM12", "COM13", "COM14", "COM15", "COM16"}},
    };
    for (const auto& c : cases) {
        FakePorts ports;
        ports.results = c.results;
        ports.heldHere = c.heldHere;
        EXPECT_EQ(RefreshPortList(ports), c.expected) << c.name;
        EXPECT_TRUE(ports.openNow.empty()) << c.name << ": a probed port was left open";
    }
}

TEST(PortNumberFromText, ReadsFromTheFourthCharacter) {
    const struct {
        const char* text;
        std::optional<std::int16_t> port;
    } cases[] = {
        {"COM1", 1},
        {"COM10", 10},
        {"COM16", 16},
        {"COM 3", 3},
        {"XYZ12", 12},
        {"COM2.5", 2},
        {"COM3.5", 4},
        {"COM", std::nullopt},
        {"COMx", std::nullopt},
        {"COM0", std::nullopt},
        {"COM-1", std::nullopt},
        {"COM40000", std::nullopt},
        {"CO", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(PortNumberFromText(c.text), c.port) << c.text;
    }
}
