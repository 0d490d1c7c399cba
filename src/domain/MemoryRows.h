#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <optional>

namespace rk31 {

// The Advanced Commands dialog's rows: an address, the data to write and the data read back.
inline constexpr int kMemoryRows = 32;
inline constexpr int kRowsPerBank = 8;

// The address a row starts with; rows 20 to 31 start empty.
QString InitialAddressText(int row);

// A 32-bit word typed as 1 to 8 hexadecimal digits without prefix, either case, blanks around
// allowed; "FFFFFFFF" is -1. Nothing for any other text.
std::optional<std::int32_t> ParseHexWord(const QString& text);
// Upper case, no prefix, no leading zeros; a negative word shows its 32-bit pattern.
QString HexWordText(std::int32_t word);

// A text of blanks only counts as empty, as the box then visibly holds nothing.
bool IsEmptyCell(const QString& text);

struct MemoryRowText {
    QString address;
    QString dataIn;
};
using MemoryRowTexts = std::array<MemoryRowText, kMemoryRows>;

enum class MemoryCommand { Read, Write };

// All rows are checked before anything is sent, so a typing error never leaves a half-written
// chip. What the command would use must be hexadecimal: every non-empty address, and for a write
// the data of each row that has an address. Returns the message for the first bad row.
std::optional<QString> FindBadMemoryRow(const MemoryRowTexts& rows, MemoryCommand command);

// The part the dialog works on and whether the user may switch it (mode 1 fixes the part).
class MemoryPartSelection {
  public:
    void Init(std::int16_t index, std::int16_t num) {
        m_part = index;
        m_mode = num;
    }
    std::int16_t part() const { return m_part; }
    bool partFixed() const { return m_mode == 1; }
    // Switches to part k; true when it changed, and the data read or typed for the old part
    // must go.
    bool Select(std::int16_t k);

  private:
    std::int16_t m_part = 0;
    std::int16_t m_mode = 0;
};

}  // namespace rk31
