// Any text in the Advanced dialog's rows: the check of all rows, the hexadecimal words, and the
// read and write commands on the simulated programmer.
#include <QStringList>

#include "FuzzSupport.h"
#include "device/ChipStateMachine.h"
#include "procedures/twopart/AdvancedMemory.h"

using namespace rk31;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ConnectedBench& b = fuzz::ConnectedBench::get();
    fuzz::Input in(data, size);
    const auto part = static_cast<std::int16_t>(in.take<std::uint8_t>() % 2);
    const bool write = in.take<std::uint8_t>() % 2 != 0;
    // One cell a line: address, data, address, data, ...
    const QStringList cells = in.rest().split(u'\n');
    MemoryRowTexts rows;
    for (int row = 0; row < kMemoryRows; ++row) {
        const qsizetype cell = 2 * row;
        rows[static_cast<std::size_t>(row)] = {
            cell < cells.size() ? cells[cell] : QString(),
            cell + 1 < cells.size() ? cells[cell + 1] : QString()};
    }
    for (const QString& cell : cells) {
        if (const auto word = ParseHexWord(cell)) {
            RK31_FUZZ_CHECK(ParseHexWord(HexWordText(*word)) == word);
            RK31_FUZZ_CHECK(HexWordText(*word).size() <= 8);
        }
        IsEmptyCell(cell);
    }
    const MemoryCommand command = write ? MemoryCommand::Write : MemoryCommand::Read;
    const bool bad = FindBadMemoryRow(rows, command).has_value();
    ChipStateMachine machine(DeviceSession::instance(), b.prompts, b.pause);
    AdvancedMemory memory(DeviceSession::instance(), machine, b.prompts);
    const int before = b.prompts.messages;
    const bool done =
        write ? memory.MemWrite(part, rows) : memory.MemRead(part, rows, [](int row, std::int32_t) {
            RK31_FUZZ_CHECK(row >= 0 && row < kMemoryRows);
        });
    // A bad row stops the command with its message before the memory is touched.
    RK31_FUZZ_CHECK(!bad || (!done && b.prompts.messages > before));
    b.simulation.box->clearTrace();
    return 0;
}
