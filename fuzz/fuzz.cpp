// The fuzz program: `fuzz DOOR [arguments of libFuzzer]`. What libFuzzer starts itself finds the door in the environment.
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "fuzz/doors.h"
#include "fuzz/support/mutators.h"
#include "platform/log.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t most);

namespace fuzz {

namespace {

enum class EInput { Text, Bytes };

struct SDoor {
    std::string_view name;
    void (*enter)(std::string_view input);
    EInput input;
    CMutator mutate = nullptr;  // beside libFuzzer's own mutations
};

constexpr SDoor Doors[] = {
    {"bench", Bench, EInput::Text},
    {"dispatcher", Dispatcher, EInput::Text},
    {"fileformula", FileFormula, EInput::Text},
    {"forces", Forces, EInput::Text},
    {"formula", Formula, EInput::Text},
    {"fst", Fst, EInput::Bytes, MutateFst},
    {"ghw", Ghw, EInput::Bytes, MutateGhw},
    {"information", Information, EInput::Text},
    {"matfile", MatFile, EInput::Bytes},
    {"matpath", MatPath, EInput::Text},
    {"matstream", MatStream, EInput::Bytes},
    {"notation", Notation, EInput::Text},
    {"numbers", Numbers, EInput::Text},
    {"signallist", SignalList, EInput::Bytes},
    {"signaltree", SignalTree, EInput::Bytes, MutateTree},
    {"states", States, EInput::Text},
    {"stream", Stream, EInput::Bytes},
    {"switches", Switches, EInput::Text},
    {"texttable", TextTable, EInput::Text},
    {"types", Types, EInput::Text},
    {"vcd", Vcd, EInput::Text},
    {"wavejson", WaveJson, EInput::Text},
};

constexpr const char *Variable = "TESK_FUZZ_DOOR";

const SDoor *g_door = nullptr;
std::filesystem::path g_folder;

const SDoor *FindDoor(const char *name)
{
    const auto *door = std::ranges::find(Doors, std::string_view(name != nullptr ? name : ""), &SDoor::name);
    return door != std::end(Doors) ? door : nullptr;
}

// Takes the door off the arguments.
void ChooseDoor(int &count, char **arguments)
{
    g_door = count > 1 ? FindDoor(arguments[1]) : nullptr;
    if (g_door == nullptr) {
        g_door = FindDoor(std::getenv(Variable));
        return;
    }
    setenv(Variable, arguments[1], 1);
    std::move(arguments + 2, arguments + count + 1, arguments + 1);
    --count;
}

[[noreturn]] void TellDoors()
{
    std::fputs("usage: fuzz DOOR [ARGUMENT OF LIBFUZZER...]\ndoors:", stderr);
    for (const SDoor &door : Doors)
        std::fprintf(stderr, " %s", std::string(door.name).c_str());
    std::fputs("\n", stderr);
    std::exit(2);
}

// Paths among the arguments are meant from the folder in which the program was started.
void MakePathsAbsolute(int count, char **arguments)
{
    static std::deque<std::string> s_kept;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        std::size_t path = 0;
        for (const std::string_view option : {"-dict=", "-artifact_prefix=", "-exact_artifact_path="}) {
            if (argument.starts_with(option))
                path = option.size();
        }
        if (path == argument.size() || (path == 0 && argument.starts_with('-')))
            continue;
        s_kept.emplace_back(argument.substr(0, path));
        s_kept.back() += std::filesystem::absolute(argument.substr(path)).string();
        arguments[i] = s_kept.back().data();
    }
}

// A formula may name any file: there is none in the program's own folder but what a door puts there.
void EnterOwnFolder()
{
    g_folder = std::filesystem::temp_directory_path() / ("tesk-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(g_folder);
    std::filesystem::current_path(g_folder);
    std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(g_folder, ignored);
    });
}

// Most of what is no text in a text door is refused at once; some of it remains.
void MakePrintable(std::uint8_t *data, std::size_t size)
{
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] != '\n' && data[i] != '\t')
            data[i] = static_cast<std::uint8_t>(' ' + data[i] % 95);
    }
}

std::size_t MutateFile(std::uint8_t *data, std::size_t size, std::size_t most, std::mt19937 &random)
{
    CBytes file(data, data + size);
    if (!g_door->mutate(file, random) || file.size() > most)
        return LLVMFuzzerMutate(data, size, most);
    std::ranges::copy(file, data);
    return file.size();
}

}  // namespace

void MutateBytes(CBytes &bytes, std::size_t most)
{
    const std::size_t size = bytes.size();
    bytes.resize(std::max(size, most));
    bytes.resize(LLVMFuzzerMutate(bytes.data(), size, most));
}

}  // namespace fuzz

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    fuzz::ChooseDoor(*count, *arguments);
    if (fuzz::g_door == nullptr)
        fuzz::TellDoors();
    fuzz::MakePathsAbsolute(*count, *arguments);
    fuzz::EnterOwnFolder();
    Q71log_SetSink([](void *, int, const char *, const char *) {}, nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::g_door->enter({reinterpret_cast<const char *>(data), size});
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size, std::size_t most, unsigned seed)
{
    std::mt19937 random(seed);
    if (fuzz::g_door->mutate != nullptr && random() % 4 != 0)
        return fuzz::MutateFile(data, size, most, random);
    const std::size_t mutated = LLVMFuzzerMutate(data, size, most);
    if (fuzz::g_door->input == fuzz::EInput::Text && random() % 16 != 0)
        fuzz::MakePrintable(data, mutated);
    return mutated;
}
