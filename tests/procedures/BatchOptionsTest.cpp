// rk31prog's command line.
#include <gtest/gtest.h>

#include "procedures/batch/BatchOptions.h"

namespace rk31 {
namespace {

TEST(BatchOptions, RefusedCommandLinesSayWhy) {
    const struct {
        QStringList arguments;
        const char* error;
    } cases[] = {
        {{}, "no command"},
        {{"burn", "a.txt"}, "unknown command: burn"},
        {{"program", "a.txt"}, "program needs --port N"},
        {{"program", "a.txt", "--port"}, "Missing value after '--port'."},
        {{"program", "a.txt", "--port", "1", "--bogus"}, "Unknown option 'bogus'."},
        {{"program", "a.txt", "--port", "COM1"}, "--port needs a port number, not COM1"},
        {{"program", "a.txt", "--port", "0"}, "--port needs a port number, not 0"},
        {{"program", "a.txt", "--port", "1", "--part", "3"}, "--part takes 1, 2 or both, not 3"},
        {{"program", "a.txt", "b.txt", "--port", "1"}, "more than one file: b.txt"},
        {{"program", "--port", "1"}, "no settings file"},
        {{"program", "a.txt", "--port", "1", "--csv"}, "unknown option for program: --csv"},
        {{"check", "a.txt", "--verify"}, "unknown option for check: --verify"},
        {{"curve", "a.txt", "--csv", "--lock"}, "unknown option for curve: --lock"},
        {{"verify", "a.txt"}, "verify needs --port N"},
        {{"program", "a.txt", "--port", "1", "--strict"}, "--strict needs --verify"},
        {{"program", "a.txt", "--port", "1", "--count", "x"},
         "--count needs a number of chips, not x"},
        {{"program", "a.txt", "--port", "1", "--count", "-2"},
         "--count needs a number of chips, not -2"},
        {{"report"}, "no record file"},
        {{"report", "r.jsonl", "--verify"}, "unknown option for report: --verify"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(qPrintable(c.arguments.join(u' ')));
        const ParsedArguments parsed = ParseBatchArguments(c.arguments);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.error, QString::fromLatin1(c.error));
    }
}

TEST(BatchOptions, AcceptedCommandLines) {
    const auto program =
        ParseBatchArguments({"program", "chip.txt", "--port", "3", "--part", "both", "--verify",
                             "--lock", "--log", "dev.log", "-q", "--json"});
    ASSERT_TRUE(program.options) << qPrintable(program.error);
    const BatchOptions& o = *program.options;
    EXPECT_EQ(o.command, BatchCommand::Program);
    EXPECT_EQ(o.settings, QStringLiteral("chip.txt"));
    EXPECT_EQ(o.port, 3);
    EXPECT_EQ(o.part, PartChoice::Both);
    EXPECT_TRUE(o.verify && o.lock && o.quiet && o.json);
    EXPECT_EQ(o.log, QStringLiteral("dev.log"));
    EXPECT_EQ(o.count, 1);

    const auto line = ParseBatchArguments(
        {"verify", "chip.txt", "--port", "2", "--strict", "--count", "0", "--record", "r.jsonl"});
    ASSERT_TRUE(line.options) << qPrintable(line.error);
    EXPECT_EQ(line.options->command, BatchCommand::Verify);
    EXPECT_TRUE(line.options->verify && line.options->strict);
    EXPECT_EQ(line.options->count, 0);
    EXPECT_EQ(line.options->record, QStringLiteral("r.jsonl"));

    for (const QStringList& curveLine : {QStringList{"curve", "--csv", "chip.txt", "--part", "2"},
                                         {"curve", "chip.txt", "--part=2"}}) {
        const auto curve = ParseBatchArguments(curveLine);
        ASSERT_TRUE(curve.options) << qPrintable(curve.error);
        EXPECT_EQ(curve.options->command, BatchCommand::Curve);
        EXPECT_EQ(curve.options->part, PartChoice::Part2);
        EXPECT_FALSE(curve.options->verify);
    }
    // Help and version stand alone, whatever else is on the line.
    for (const auto& [line, command] : {std::pair{QStringList{"--help"}, BatchCommand::Help},
                                        {{"-h", "program"}, BatchCommand::Help},
                                        {{"check", "a.txt", "--version"}, BatchCommand::Version}}) {
        const auto parsed = ParseBatchArguments(line);
        ASSERT_TRUE(parsed.options) << qPrintable(parsed.error);
        EXPECT_EQ(parsed.options->command, command);
    }
}

}  // namespace
}  // namespace rk31
