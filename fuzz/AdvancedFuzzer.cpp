// Any text in the Advanced dialog's rows: the check of all rows, the hexadecimal words, and the
// read and write commands on the simulated programmer, with the part off, in ADC mode or in OWI
// mode, and perhaps locked on the chip without the program knowing.
#include <QStringList>
#include <map>
#include <vector>

#include "FuzzBench.h"
#include "device/ChipStateMachine.h"
#include "domain/MemoryRows.h"
#include "procedures/twopart/AdvancedMemory.h"

using namespace rk31;

namespace {

int callsStartingWith(const QStringList& trace, const QString& prefix) {
    int calls = 0;
    for (const QString& call : trace) {
        calls += call.startsWith(prefix) ? 1 : 0;
    }
    return calls;
}

// Words 1 to 0x14 mirror the registers and the identification word cannot be written: neither
// reads back what was written.
bool keepsWhatIsWritten(std::int32_t address) {
    return (address < 1 || address > 0x14) && address != sim::kIdAddress;
}

MemoryRowTexts rowsOf(const QStringList& cells) {
    // One cell a line: address, data, address, data, ...
    MemoryRowTexts rows;
    for (int row = 0; row < kMemoryRows; ++row) {
        const qsizetype cell = 2 * row;
        rows[static_cast<std::size_t>(row)] = {
            cell < cells.size() ? cells[cell] : QString(),
            cell + 1 < cells.size() ? cells[cell + 1] : QString()};
    }
    return rows;
}

// A read reports the rows with an address, in order; a write writes the rows with an address
// and data, to the part.
void checkCommand(fuzz::ConnectedBench& b, std::int16_t part, bool write,
                  const MemoryRowTexts& rows, const std::vector<int>& reported) {
    std::vector<int> addressed;
    int writable = 0;
    for (int row = 0; row < kMemoryRows; ++row) {
        const MemoryRowText& texts = rows[static_cast<std::size_t>(row)];
        if (!IsEmptyCell(texts.address)) {
            addressed.push_back(row);
            writable += IsEmptyCell(texts.dataIn) ? 0 : 1;
        }
    }
    // Every memory call goes to the part.
    const QStringList trace = b.trace();
    const QString op = write ? QStringLiteral("WriteMemory(") : QStringLiteral("ReadMemory(");
    const int calls = callsStartingWith(trace, op);
    RK31_FUZZ_CHECK(callsStartingWith(trace, op + QString::number(part) + u',') == calls);
    if (write) {
        RK31_FUZZ_CHECK(calls == writable);
    } else {
        RK31_FUZZ_CHECK(calls == static_cast<int>(addressed.size()));
        RK31_FUZZ_CHECK(reported == addressed);
    }
}

// What a written part in OWI mode reads back: for each address the data its last row wrote.
void checkReadBack(fuzz::ConnectedBench& b, ChipStateMachine& machine, std::int16_t part,
                   const MemoryRowTexts& rows) {
    std::map<std::int32_t, std::int32_t> written;
    for (const MemoryRowText& texts : rows) {
        if (!IsEmptyCell(texts.address) && !IsEmptyCell(texts.dataIn)) {
            written[*ParseHexWord(texts.address)] = *ParseHexWord(texts.dataIn);
        }
    }
    AdvancedMemory memory(b.session(), machine, b.prompts);
    const bool done = memory.MemRead(part, rows, [&](int row, std::int32_t word) {
        const std::int32_t address = *ParseHexWord(rows[static_cast<std::size_t>(row)].address);
        const auto it = written.find(address);
        if (it != written.end() && keepsWhatIsWritten(address)) {
            RK31_FUZZ_CHECK(word == it->second);
        }
    });
    RK31_FUZZ_CHECK(done);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input in(data, size);
    const auto partAndState = in.take<std::uint8_t>();
    const auto part = static_cast<std::int16_t>(partAndState % 2);
    const std::int32_t state = partAndState / 2 % 3;  // PowerOff, AdcMode, OwiMode
    const auto commandAndLock = in.take<std::uint8_t>();
    const bool write = commandAndLock % 2 != 0;
    sim::SimConfig config;
    config.locked = commandAndLock / 2 % 4;
    const QStringList cells = in.rest().split(u'\n');
    const MemoryRowTexts rows = rowsOf(cells);

    for (const QString& cell : cells) {
        if (const auto word = ParseHexWord(cell)) {
            RK31_FUZZ_CHECK(ParseHexWord(HexWordText(*word)) == word);
            RK31_FUZZ_CHECK(HexWordText(*word).size() <= 8);
        }
        IsEmptyCell(cell);
    }

    fuzz::ConnectedBench b(config);
    ChipStateMachine machine(b.session(), b.prompts, b.pause);
    if (state != PowerOff) {
        machine.ChipChangeToState(part, PowerOff, AdcMode);
    }
    if (state == OwiMode) {
        machine.ChipChangeToState(part, AdcMode, OwiMode);
    }
    b.box().clearTrace();

    const bool bad =
        FindBadMemoryRow(rows, write ? MemoryCommand::Write : MemoryCommand::Read).has_value();
    AdvancedMemory memory(b.session(), machine, b.prompts);
    const int before = b.prompts.messages;
    std::vector<int> reported;
    const bool done = write ? memory.MemWrite(part, rows)
                            : memory.MemRead(part, rows, [&](int row, std::int32_t) {
                                  RK31_FUZZ_CHECK(row >= 0 && row < kMemoryRows);
                                  reported.push_back(row);
                              });
    const QStringList trace = b.trace();
    // A bad row stops the command with its message before anything is sent.
    RK31_FUZZ_CHECK(!bad || (!done && b.prompts.messages > before && trace.isEmpty()));
    // A part without supply has no memory to show.
    RK31_FUZZ_CHECK(state != PowerOff || !done);
    if (!done) {
        RK31_FUZZ_CHECK(b.prompts.messages > before);
        RK31_FUZZ_CHECK(callsStartingWith(trace, QStringLiteral("ReadMemory(")) == 0 &&
                        callsStartingWith(trace, QStringLiteral("WriteMemory(")) == 0);
        return 0;
    }
    checkCommand(b, part, write, rows, reported);
    if (write && b.box().dies[static_cast<std::size_t>(part)].inOwi()) {
        checkReadBack(b, machine, part, rows);
    }
    return 0;
}
