// Any bytes as a settings file of each layout; whatever the reader takes from them must come back
// unchanged through a written file.
#include <QByteArray>
#include <map>

#include "FuzzSupport.h"
#include "params/SettingsFile.h"

using namespace rk31;

namespace {

using Values = std::map<std::size_t, std::pair<QString, int>>;

// Reads with one of the point windows' layouts; the values applied, by line of the layout.
Values readPointFile(const QStringList& lines, const SettingsLayout& layout,
                     SettingsReadResult& result) {
    Values values;
    result = ReadSettings(lines, layout, [&](const SettingsLine& line, const SettingsValue& v) {
        values[static_cast<std::size_t>(&line - layout.data())] = {v.text, v.number};
    });
    return values;
}

void pointLayoutRoundTrip(const QStringList& lines, const SettingsLayout& layout) {
    SettingsReadResult first;
    const Values read = readPointFile(lines, layout, first);
    RK31_FUZZ_CHECK(first.error == 0 || (first.line >= 1 && first.line <= int(layout.size())));
    const QStringList written = WriteSettings(layout, [&](const SettingsLine& line) {
        const auto it = read.find(static_cast<std::size_t>(&line - layout.data()));
        return it == read.end() ? SettingsValue{}
                                : SettingsValue{it->second.first, it->second.second};
    });
    SettingsReadResult second;
    const Values again = readPointFile(LinesOfBytes(BytesOfLines(written)), layout, second);
    RK31_FUZZ_CHECK(second.error == 0);
    for (const auto& [index, value] : read) {
        RK31_FUZZ_CHECK(again.at(index) == value);
    }
}

void twoPartRoundTrip(const QStringList& lines) {
    const TwoPartSettingsRead read = ReadTwoPartSettings(lines, {});
    const QStringList written = WriteTwoPartSettings(read.values);
    const TwoPartSettingsRead again = ReadTwoPartSettings(LinesOfBytes(BytesOfLines(written)), {});
    RK31_FUZZ_CHECK(again.result.error == 0);
    RK31_FUZZ_CHECK(again.values == read.values);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QStringList lines =
        LinesOfBytes(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    twoPartRoundTrip(lines);
    pointLayoutRoundTrip(lines, OnePartPointLayout());
    pointLayoutRoundTrip(lines, DualPointLayout());
    // Each line's value as a list index or check value.
    for (const QString& line : lines) {
        if (const auto n = TextToInt16(line)) {
            RK31_FUZZ_CHECK(*n >= -32768 && *n <= 32767);
        }
    }
    return 0;
}
