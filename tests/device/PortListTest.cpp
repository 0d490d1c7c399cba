#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "device/PortList.h"
#include "sim/SimulatedProgrammer.h"

using namespace rk31;

TEST(RefreshPortList, ListsWhatOpensWhatIsHeldAndWhatThisControlHolds) {
    constexpr int kHeld = kPortAlreadyOpen;
    // Ports not named fail to open with another error.
    // clang-format off
    const struct { const char* name; std::map<int, int> results; std::vector<int> heldHere;
                   QStringList expected; } cases[] = {
        {"held port between two free ones", {{1, 0}, {2, kHeld}, {3, 0}}, {}, {"COM1", "COM2", "COM3"}},
        {"held 15 lands before free 16", {{15, kHeld}, {16, 0}}, {}, {"COM15", "COM16"}},
        {"other errors left out, held 16 never listed", {{4, 8002}, {5, 8012}, {16, kHeld}}, {}, {}},
        {"held by this control", {{7, 0}, {12, 0}}, {7, 12}, {"COM7", "COM12"}},
        {"ports 1 to 16 are probed", {{1, 0}, {16, 0}, {17, 0}}, {}, {"COM1", "COM16"}},
    };
    // clang-format on
    for (const auto& c : cases) {
        sim::SimulatedPorts ports;
        ports.results = c.results;
        for (int port : c.heldHere) {
            ports.open(port);
        }
        EXPECT_EQ(RefreshPortList(ports), c.expected) << c.name;
        for (int port = 1; port <= 17; ++port) {
            EXPECT_EQ(ports.isOpenHere(port), std::ranges::count(c.heldHere, port) == 1)
                << c.name << ": COM" << port;
        }
    }
}

TEST(PortNumberFromText, ReadsFromTheFourthCharacter) {
    // clang-format off
    const struct { const char* text; std::optional<std::int16_t> port; } cases[] = {
        {"COM1", 1}, {"COM10", 10}, {"COM16", 16}, {"COM 3", 3}, {"XYZ12", 12}, {"COM2.5", 2},
        {"COM3.5", 4}, {"COM", std::nullopt}, {"COMx", std::nullopt}, {"COM0", std::nullopt},
        {"COM-1", std::nullopt}, {"COM40000", std::nullopt}, {"CO", std::nullopt}, {"", std::nullopt},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(PortNumberFromText(c.text), c.port) << c.text;
    }
}
