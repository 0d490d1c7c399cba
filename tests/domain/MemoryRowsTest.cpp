#include <gtest/gtest.h>

#include "domain/MemoryRows.h"

using namespace rk31;

TEST(AdvancedMemory, HexadecimalWords) {
    // clang-format off
    const struct { const char* text; std::optional<std::int32_t> word; } cases[] = {
        {"48", 0x48}, {"a", 0xA}, {"Ab12", 0xAB12}, {" 10 ", 0x10}, {"FFFFFFFF", -1},
        {"80000000", INT32_MIN}, {"00000001", 1}, {"", {}}, {"123456789", {}}, {"0x10", {}},
        {"-1", {}}, {"+1", {}}, {"G", {}}, {"1 2", {}}, {"\u0661", {}},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(ParseHexWord(QString::fromUtf8(c.text)), c.word) << c.text;
    }
}

// The message's full text is pinned by the dialog's tests; here, which row it names.
TEST(AdvancedMemory, FirstBadRowIsNamed) {
    using enum MemoryCommand;
    // clang-format off
    const struct { const char* name; MemoryCommand command; int row; const char* address, *dataIn;
                   const char* named; } cases[] = {
        {"bad address, write without data", Write, 5, "XYZ", "", "Row 5"},
        {"data without address is unused", Write, 22, "", "zz", ""},
        {"blank address counts as empty", Write, 23, "  ", "zz", ""},
        {"too long", Read, 31, "123456789", "", "Row 31"},
    };
    // clang-format on
    for (const auto& c : cases) {
        MemoryRowTexts rows;
        for (int row = 0; row < kMemoryRows; ++row) {
            rows[row].address = InitialAddressText(row);
        }
        rows[c.row] = {c.address, c.dataIn};
        const auto message = FindBadMemoryRow(rows, c.command);
        EXPECT_EQ(message.value_or(QString()).section(u':', 0, 0).toStdString(), c.named) << c.name;
    }
}
