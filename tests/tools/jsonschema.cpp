// What tesk play writes as JSON is what its schema says.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string>

#include "testpaths.h"
#include "tools/runtool.h"

namespace {

using nlohmann::json;

bool IsOfType(const json &value, const std::string &type)
{
    if (type == "integer")
        return value.is_number_integer();
    return type == value.type_name();
}

// The words of JSON schemas that ours uses. @return what of the value is against them; empty if nothing is
std::string FindFault(const json &value, const json &schema, const std::string &place)
{
    const json types = schema["type"].is_array() ? schema["type"] : json::array({schema["type"]});
    if (std::ranges::none_of(types, [&](const json &type) { return IsOfType(value, type.get<std::string>()); }))
        return place + " is of type " + value.type_name();
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
        const std::string fault = FindFault(value[i], schema.at("items"), place + '[' + std::to_string(i) + ']');
        if (!fault.empty())
            return fault;
    }
    if (!value.is_object())
        return {};
    for (const json &key : schema.at("required")) {
        if (!value.contains(key))
            return place + " has no " + key.get<std::string>();
    }
    for (const auto &[key, member] : value.items()) {
        if (!schema.at("properties").contains(key))
            return place + " has a key " + key;
        const std::string fault = FindFault(member, schema["properties"][key], place + '.' + key);
        if (!fault.empty())
            return fault;
    }
    return {};
}

std::string Fault(const json &document, const char *schemaFile = "json.schema.json")
{
    const json schema = json::parse(ReadFile(std::filesystem::path(TESK_SOURCE_DIR) / "docs" / schemaFile));
    return FindFault(document, schema, "$");
}

}  // namespace

TEST(JsonSchema, IsThatOfOneSignalAndOfMany)
{
    for (const char *arguments :
         {"'1 10ns -cancel 20ns'", "'1010 0ns' --count 4", "'5 0ns' --type integer --name n",
          "'/custom examples/traffic.vcd,tb.count'", "'/txt examples/sine.txt,sine -interval 1ns' --type real"}) {
        const SToolRun run = RunShell("tesk play " + std::string(arguments) + " --format json");
        const json document = json::parse(run.out);
        EXPECT_EQ(Fault(document), "") << arguments;
        EXPECT_FALSE(document["signals"].empty()) << arguments;
    }
}

TEST(JsonSchema, RefusesWhatIsWrittenOtherwise)
{
    json document = json::parse(RunShell("tesk play '1 10ns' --format json").out);
    document["signals"][0]["changes"][0]["ticks"] = "10000";
    EXPECT_EQ(Fault(document), "$.signals[0].changes[0].ticks is of type string");
    document["signals"][0].erase("changes");
    EXPECT_EQ(Fault(document), "$.signals[0] has no changes");
    document["changes"] = 1;
    EXPECT_EQ(Fault(document), "$ has a key changes");
}

TEST(JsonSchema, IsThatOfComparisonsEqualOrNot)
{
    for (const char *files :
         {"examples/traffic.vcd examples/traffic.fst", "tests/data/tb.ghdl.vcd tests/data/tb.iverilog.fst",
          "tests/data/ghw_types.ghdl.ghw tests/data/ghw_types.ghdl.vcd",
          "tests/data/tb.ghdl.vcd tests/data/tb.iverilog.fst tb.clk --until 1ns"}) {
        const SToolRun run = RunShell("tesk diff " + std::string(files) + " --format json");
        const json document = json::parse(run.out);
        EXPECT_EQ(Fault(document, "diff.schema.json"), "") << files;
        EXPECT_EQ(document["equal"], run.status == 0) << files;
    }
    const SToolRun early =
        RunShell("tesk convert examples/traffic.vcd - --until 50ns | tesk diff examples/traffic.vcd - --format json");
    const json document = json::parse(early.out);
    EXPECT_EQ(Fault(document, "diff.schema.json"), "");
    EXPECT_TRUE(document["early_end"].is_object()) << early.out << early.err;
}
