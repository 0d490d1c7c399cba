#include <gtest/gtest.h>

#include <QStringList>

#include "programming/AdvancedMemory.h"

using namespace rk31;

TEST(AdvancedMemory, HexadecimalWords) {
    const struct {
        const char* text;
        std::optional<std::int32_t> word;
    } cases[] = {
        {"48", 0x48},
        {"a", 0xA},
        {"Ab12", 0xAB12},
        {" 10 ", 0x10},
        {"FFFFFFFF", -1},
        {"80000000", INT32_MIN},
        {"00000001", 1},
        {"", std::nullopt},
        {"123456789", std::nullopt},
        {"0x10", std::nullopt},
        {"-1", std::nullopt},
        {"+1", std::nullopt},
        {"G", std::nullopt},
        {"1 2", std::nullopt},
        {"\u0661", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ParseHexWord(QString::fromUtf8(c.text)), c.word) << c.text;
    }
    EXPECT_EQ(HexWordText(0), "0");
    EXPECT_EQ(HexWordText(0xab), "AB");
    EXPECT_EQ(HexWordText(-1), "FFFFFFFF");
}

TEST(AdvancedMemory, InitialAddresses) {
    QStringList addresses;
    for (int row = 0; row < kMemoryRows; ++row) {
        addresses << InitialAddressText(row);
    }
    EXPECT_EQ(addresses.join(','), "1,2,3,4,5,6,7,8,9,A,B,C,D,E,F,10,11,12,14,48,,,,,,,,,,,,");
}

TEST(AdvancedMemory, FirstBadRowIsNamed) {
    const struct {
        const char* name;
        MemoryCommand command;
        int row;
        const char* address;
        const char* dataIn;
        std::optional<int> badRow;
    } cases[] = {
        {"bad address, read", MemoryCommand::Read, 5, "XYZ", "", 5},
        {"bad address, write without data", MemoryCommand::Write, 5, "XYZ", "", 5},
        {"read ignores data in", MemoryCommand::Read, 3, "3", "zz", std::nullopt},
        {"bad data, write", MemoryCommand::Write, 7, "8", "G1", 7},
        {"data without address is unused", MemoryCommand::Write, 22, "", "zz", std::nullopt},
        {"blank address counts as empty", MemoryCommand::Write, 23, "  ", "zz", std::nullopt},
        {"too long", MemoryCommand::Read, 31, "123456789", "", 31},
    };
    for (const auto& c : cases) {
        MemoryRowTexts rows;
        for (int row = 0; row < kMemoryRows; ++row) {
            rows[row].address = InitialAddressText(row);
        }
        rows[c.row] = {c.address, c.dataIn};
        const auto message = FindBadMemoryRow(rows, c.command);
        if (c.badRow) {
            EXPECT_EQ(message,
                      QStringLiteral("Row %1: Address and Data must be hexadecimal numbers!")
                          .arg(*c.badRow))
                << c.name;
        } else {
            EXPECT_FALSE(message.has_value()) << c.name;
        }
    }
}
