#include "programming/AdvancedMemory.h"

#include <cctype>

#include "chipsession/ChipStateMachine.h"
#include "core/Prompts.h"
#include "rk31/DeviceError.h"
#include "shell/DeviceSession.h"

namespace rk31 {

QString InitialAddressText(int row) {
    static const std::array<const char*, 20> kAddresses = {"1", "2",  "3",  "4",  "5",  "6", "7",
                                                           "8", "9",  "A",  "B",  "C",  "D", "E",
                                                           "F", "10", "11", "12", "14", "48"};
    if (row < 0 || row >= static_cast<int>(kAddresses.size())) {
        return {};
    }
    return QString::fromLatin1(kAddresses[static_cast<std::size_t>(row)]);
}

std::optional<std::int32_t> ParseHexWord(const QString& text) {
    const QString digits = text.trimmed();
    if (digits.isEmpty() || digits.size() > 8) {
        return std::nullopt;
    }
    // QString::toUInt alone would also take a "0x" prefix or a sign.
    for (const QChar c : digits) {
        if (c.unicode() > 0x7f || !std::isxdigit(static_cast<unsigned char>(c.unicode()))) {
            return std::nullopt;
        }
    }
    bool ok = false;
    const std::uint32_t word = digits.toUInt(&ok, 16);
    if (!ok) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(word);
}

QString HexWordText(std::int32_t word) {
    return QString::number(static_cast<std::uint32_t>(word), 16).toUpper();
}

bool IsEmptyCell(const QString& text) {
    return text.trimmed().isEmpty();
}

std::optional<QString> FindBadMemoryRow(const MemoryRowTexts& rows, MemoryCommand command) {
    for (int row = 0; row < kMemoryRows; ++row) {
        const MemoryRowText& texts = rows[static_cast<std::size_t>(row)];
        if (IsEmptyCell(texts.address)) {
            continue;
        }
        bool good = ParseHexWord(texts.address).has_value();
        if (command == MemoryCommand::Write && !IsEmptyCell(texts.dataIn)) {
            good = good && ParseHexWord(texts.dataIn).has_value();
        }
        if (!good) {
            return QStringLiteral("Row ") + QString::number(row) +
                   QStringLiteral(": Address and Data must be hexadecimal numbers!");
        }
    }
    return std::nullopt;
}

namespace {

std::shared_ptr<MemoryAccess> memoryAccess(DeviceSession& session) {
    std::shared_ptr<MemoryAccess> memory;
    session.device().GetMemoryAccess(memory);
    if (!memory) {
        throw DeviceError(QStringLiteral("Error: CANNOT Create Objects!"));
    }
    return memory;
}

}  // namespace

bool MemoryPartSelection::Select(std::int16_t k) {
    if (k == m_part) {
        return false;
    }
    m_part = k;
    return true;
}

bool AdvancedMemory::prepare(std::int16_t part, const MemoryRowTexts& rows, MemoryCommand command) {
    if (const auto bad = FindBadMemoryRow(rows, command)) {
        m_prompts.message(*bad);
        return false;
    }
    auto& state = m_session.ChipState[static_cast<std::size_t>(part)];
    if (state == AdcMode) {
        m_chips.ChipChangeToState(part, AdcMode, OwiMode);
    }
    if (state != OwiMode) {
        m_prompts.message(QStringLiteral("Error: Not in OWI mode"));
        return false;
    }
    return true;
}

bool AdvancedMemory::MemRead(std::int16_t part, const MemoryRowTexts& rows, const RowRead& onRead) {
    if (!prepare(part, rows, MemoryCommand::Read)) {
        return false;
    }
    for (int row = 0; row < kMemoryRows; ++row) {
        const QString& address = rows[static_cast<std::size_t>(row)].address;
        if (IsEmptyCell(address)) {
            continue;
        }
        std::int32_t word = 0;
        memoryAccess(m_session)->ReadMemory(part, *ParseHexWord(address), word);
        if (onRead) {
            onRead(row, word);
        }
    }
    return true;
}

bool AdvancedMemory::MemWrite(std::int16_t part, const MemoryRowTexts& rows) {
    if (!prepare(part, rows, MemoryCommand::Write)) {
        return false;
    }
    for (const MemoryRowText& texts : rows) {
        if (IsEmptyCell(texts.address) || IsEmptyCell(texts.dataIn)) {
            continue;
        }
        memoryAccess(m_session)->WriteMemory(part, *ParseHexWord(texts.address),
                                             *ParseHexWord(texts.dataIn));
    }
    return true;
}

}  // namespace rk31
