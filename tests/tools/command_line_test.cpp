#include "command_line.h"

#include <gtest/gtest.h>

namespace corvina::tools {
namespace {

using Action = CommandLine::Action;
using Texts = std::vector<std::string>;

CommandLine Parse(const Texts& arguments) {
    return ParseCommandLine(arguments);
}

TEST(CommandLine, TakesFilesAndOptionsInAnyOrder) {
    const CommandLine info = Parse({"info", "a.evtx", "--", "--help", "-"});
    EXPECT_EQ(info.What, Action::Info);
    EXPECT_EQ(info.Files, (Texts{"a.evtx", "--help", "-"}));

    const CommandLine sample = Parse({"sample", "--events", "1000", "folder", "--computers=3", "--seed", "0"});
    EXPECT_EQ(sample.What, Action::Sample);
    EXPECT_EQ(sample.Files, Texts{"folder"});
    EXPECT_EQ(sample.Sample.Events, 1000U);
    EXPECT_EQ(sample.Sample.Computers, 3U);
    EXPECT_EQ(sample.Sample.Seed, 0U);

    const CommandLine query = Parse({"query", "--computer", "PC", "store", "--xml", "-"});
    EXPECT_EQ(query.What, Action::Query);
    EXPECT_EQ(query.Files, (Texts{"store", "-"}));
    EXPECT_EQ(query.Computer, "PC");
    EXPECT_TRUE(query.AsXml);

    const CommandLine exported = Parse({"export", "store", "System", "--", "--target"});
    EXPECT_EQ(exported.What, Action::Export);
    EXPECT_EQ(exported.Files, (Texts{"store", "System", "--target"}));
    EXPECT_FALSE(exported.Overwrite);
    EXPECT_TRUE(Parse({"export", "--overwrite", "store", "System", "target"}).Overwrite);
    EXPECT_EQ(Parse({"publishers", "store", "--computer="}).Computer, "");

    EXPECT_EQ(Parse({"xml", "--help"}).What, Action::Help);
    EXPECT_EQ(Parse({"--version"}).What, Action::Version);
}

TEST(CommandLine, RefusesWhatItDoesNotUnderstandAndSaysWhy) {
    const std::vector<std::pair<Texts, std::string>> cases = {
        {{}, "command"},
        {{"dump", "a"}, "dump"},
        {{"info"}, "file"},
        {{"xml", "--events", "3", "a"}, "--events"},
        {{"sample"}, "folder"},
        {{"sample", "a", "b"}, "folder"},
        {{"sample", "a", "--events"}, "--events"},
        {{"sample", "a", "--events", "ten"}, "ten"},
        {{"sample", "a", "--events=-1"}, "-1"},
        {{"sample", "a", "--events", "12x"}, "12x"},
        {{"sample", "a", "--events", "99999999999999999999"}, "99999999999999999999"},
        {{"sample", "a", "--computers", "0"}, "0"},
        {{"sample", "a", "--computers", "1001"}, "1001"},
        {{"sample", "a", "--colour", "1"}, "--colour"},
        {{"query", "a"}, "document"},
        {{"query", "a", "b", "c"}, "document"},
        {{"query", "a", "b", "--xml=1"}, "--xml"},
        {{"query", "a", "b", "--overwrite"}, "--overwrite"},
        {{"export", "a", "b"}, "target"},
        {{"export", "a", "b", "c", "--xml"}, "--xml"},
        {{"publishers"}, "store"},
        {{"publishers", "a", "--computer"}, "--computer"},
    };
    for (const auto& [arguments, part] : cases) {
        const CommandLine line = Parse(arguments);
        EXPECT_EQ(line.What, Action::Misused) << ::testing::PrintToString(arguments);
        EXPECT_NE(line.Problem.find(part), std::string::npos) << line.Problem;
    }
}

}  // namespace
}  // namespace corvina::tools
