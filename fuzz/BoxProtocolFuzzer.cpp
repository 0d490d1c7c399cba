// Any bytes on the box's line: the box cuts frames out of them and answers each on the simulated
// box and dies. Every answer is a well-formed frame for its request that reads back as sent.
#include "FuzzSupport.h"
#include "serial/protocol/BoxServer.h"
#include "sim/SimulatedDevice.h"

using namespace rk31;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto dies = std::make_shared<sim::SimulatedBox>();
    box::BoxServer server([dies] { return sim::CreateSimulatedDevice(dies); });
    box::FrameReader reader;
    reader.feed(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    for (;;) {
        const box::FrameReader::Result result = reader.next();
        if (!result.frame) {
            break;
        }
        const box::Frame answer = server.answer(*result.frame);
        RK31_FUZZ_CHECK(answer.sequence == result.frame->sequence);
        RK31_FUZZ_CHECK(answer.command == (result.frame->command | box::kResponseBit));
        RK31_FUZZ_CHECK(!answer.payload.isEmpty() && answer.payload.size() <= box::kMaxPayload);
        box::FrameReader back;
        back.feed(box::EncodeFrame(answer));
        const box::FrameReader::Result again = back.next();
        RK31_FUZZ_CHECK(again.frame && *again.frame == answer && again.skipped.isEmpty());
    }
    RK31_FUZZ_CHECK(reader.pending() < box::kFrameOverhead + box::kMaxPayload);
    return 0;
}
