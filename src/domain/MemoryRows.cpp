#include "domain/MemoryRows.h"

#include <cctype>

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

bool MemoryPartSelection::Select(std::int16_t k) {
    if (k == m_part) {
        return false;
    }
    m_part = k;
    return true;
}

}  // namespace rk31
