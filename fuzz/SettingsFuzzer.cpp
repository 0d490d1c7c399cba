// Any bytes as a settings file of each layout; whatever the reader takes from them must come back
// unchanged through a written file. Unchanged as a file holds it: a value that starts inside a
// character beyond the 16-bit range begins with half of it, which UTF-8 writes as U+FFFD, so
// the round trip compares the bytes written each time.
#include <QByteArray>
#include <map>

#include "FuzzSupport.h"
#include "domain/SettingsFile.h"

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
    const auto write = [&layout](const Values& values) {
        return BytesOfLines(WriteSettings(layout, [&](const SettingsLine& line) {
            const auto it = values.find(static_cast<std::size_t>(&line - layout.data()));
            return it == values.end() ? SettingsValue{}
                                      : SettingsValue{it->second.first, it->second.second};
        }));
    };
    const QByteArray written = write(read);
    SettingsReadResult second;
    const Values again = readPointFile(LinesOfBytes(written), layout, second);
    RK31_FUZZ_CHECK(second.error == 0);
    RK31_FUZZ_CHECK(write(again) == written);
}

void twoPartRoundTrip(const QStringList& lines) {
    const TwoPartSettingsRead read = ReadTwoPartSettings(lines, {});
    const QByteArray written = BytesOfLines(WriteTwoPartSettings(read.values));
    const TwoPartSettingsRead again = ReadTwoPartSettings(LinesOfBytes(written), {});
    RK31_FUZZ_CHECK(again.result.error == 0);
    RK31_FUZZ_CHECK(BytesOfLines(WriteTwoPartSettings(again.values)) == written);
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
