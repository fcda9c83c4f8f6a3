// Imports a VCD file once, or makes one, for bench/compare_vcd.
//   bench_vcdimport FILE                    prints the seconds of processor time that the import took
//   bench_vcdimport FILE MEGABYTES CONTENT  writes a dump of 2000 signals; see Contents
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "waveform/wavestore.h"

namespace {

constexpr unsigned Signals = 2000;

struct SContent {
    std::string_view name;
    unsigned widths[10];
    unsigned random;  // a bus takes a random value one time in so many, else it counts; 0 for never
};

constexpr SContent Contents[] = {
    {"mix", {1, 1, 1, 8, 1, 1, 16, 1, 1, 32}, 4},
    {"bits", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1}, 0},
    {"counters", {32, 32, 32, 32, 32, 32, 32, 32, 32, 32}, 0},
    {"random", {32, 32, 32, 32, 32, 32, 32, 32, 32, 32}, 1},
};

unsigned WidthOf(const SContent &content, unsigned signal)
{
    return content.widths[signal % std::size(content.widths)];
}

std::string CodeOf(unsigned signal)
{
    std::string code;
    for (; signal > 0 || code.empty(); signal /= 94)
        code += static_cast<char>('!' + signal % 94);
    return code;
}

std::string Declarations(const SContent &content)
{
    std::string text = "$date today $end\n$timescale 1 ps $end\n";
    for (unsigned i = 0; i < Signals; ++i) {
        const unsigned width = WidthOf(content, i);
        if (i % 100 == 0)
            text += (i > 0 ? "$upscope $end\n" : "") + ("$scope module unit" + std::to_string(i / 100)) + " $end\n";
        text += "$var wire " + std::to_string(width) + " " + CodeOf(i) + " signal" + std::to_string(i) +
                (width > 1 ? " [" + std::to_string(width - 1) + ":0]" : "") + " $end\n";
    }
    return text + "$upscope $end\n$enddefinitions $end\n";
}

std::string Bits(unsigned long long value)
{
    std::string bits;
    for (; value > 0 || bits.empty(); value >>= 1)
        bits.insert(bits.begin(), static_cast<char>('0' + (value & 1)));
    return bits;
}

// One signal in eight changes at each time; a bit toggles.
void Write(const char *name, std::size_t size, const SContent &content)
{
    std::ofstream file(name, std::ios::binary);
    std::mt19937_64 random(1);
    std::vector<unsigned long long> values(Signals);
    std::string text = Declarations(content);
    std::size_t written = 0;
    for (unsigned long long time = 0; written + text.size() < size; time += 500) {
        text += "#" + std::to_string(time) + "\n";
        for (auto i = static_cast<unsigned>(random() % 15); i < Signals;
             i += 1 + static_cast<unsigned>(random() % 15)) {
            const unsigned width = WidthOf(content, i);
            values[i] = (width > 1 && content.random > 0 && random() % content.random == 0 ? random() : values[i] + 1) &
                        ((1ULL << width) - 1);
            text += (width > 1 ? "b" + Bits(values[i]) + " " : Bits(values[i])) + CodeOf(i) + "\n";
        }
        if (text.size() > 1 << 20) {
            file << text;
            written += text.size();
            text.clear();
        }
    }
    file << text;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    if (argc > 3) {
        const auto *const content = std::ranges::find(Contents, std::string_view(argv[3]), &SContent::name);
        if (content == std::end(Contents))
            return 2;
        Write(argv[1], std::strtoull(argv[2], nullptr, 10) << 20, *content);
        return 0;
    }
    const std::clock_t begin = std::clock();
    const std::unique_ptr<WaveStore> store(ImportVcdFile(argv[1]));
    std::printf("%.3f\n", static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    return store != nullptr ? 0 : 1;
}
