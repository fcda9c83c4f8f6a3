// Benches made up.
#pragma once

#include <algorithm>
#include <random>
#include <string>

/// Benches with random types, kinds and scopes.
class CRandomBench {
public:
    explicit CRandomBench(unsigned seed) : m_random(seed) {}

    std::string Make(int signals)
    {
        std::string text = "until = \"400ns\"\nscope = \"tb\"\n[signals]\n";
        for (int i = 0; i < signals; ++i)
            text += Scope() + "s" + std::to_string(i) + " = " + Signal() + "\n";
        return text;
    }

private:
    int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    std::string Text(int low, int high) { return std::to_string(Number(low, high)); }

    std::string Scope()
    {
        std::string scope;
        for (int depth = Number(0, 2); depth > 0; --depth)
            scope += "u" + Text(1, 3) + ".";
        return scope;
    }

    std::string Signal()
    {
        const int width = Number(1, 40);
        const std::string range = Number(0, 1) != 0
                                      ? "(" + std::to_string(width - 1) + " downto 0)"
                                      : "(" + std::to_string(3) + " to " + std::to_string(width + 2) + ")";
        switch (Number(0, 9)) {
        case 0: return Typed("bit", Plain([&] { return Bits(1, "01"); }));
        case 1: return Typed("std_logic", Plain([&] { return Bits(1, "01XZ"); }));
        case 2: return Typed("bit_vector" + range, Plain([&] { return Bits(width, "01"); }));
        case 3: return Typed("std_logic_vector" + range, Plain([&] { return Bits(width, "01XZ"); }));
        case 4: return Typed("integer", Plain([&] { return Text(-1000, 1000); }));
        case 5: return Typed("real", Plain([&] { return Text(-9, 9) + "." + Text(0, 99); }));
        case 6: return Typed(Number(0, 1) != 0 ? "unsigned" + range : "signed" + range, Counter(width));
        case 7:
            return Typed("std_logic_vector" + range, "\\RANDOM\\1\\" + Text(1, 99) + "\\0\\255\\" + Text(1, 30) + "ns");
        case 8: return "\"/brel (H" + Text(1, 9) + " L" + Text(1, 9) + ")" + Text(1, 5) + "\"";
        default: return Typed("boolean", Plain([&] { return std::string(Number(0, 1) != 0 ? "true" : "false"); }));
        }
    }

    static std::string Typed(const std::string &type, const std::string &formula)
    {
        return "{ type = \"" + type + "\", formula = '" + formula + "' }";
    }

    std::string Bits(int width, const std::string &letters)
    {
        std::string bits;
        for (int i = 0; i < width; ++i)
            bits += letters[static_cast<std::size_t>(Number(0, static_cast<int>(letters.size()) - 1))];
        return bits;
    }

    template <class Value>
    std::string Plain(const Value &value)
    {
        std::string formula;
        int time = 0;
        for (int events = Number(1, 6); events > 0; --events) {
            formula += (formula.empty() ? "" : ", ") + value() + " " + std::to_string(time) + "ns";
            time += Number(1, 20);
        }
        if (Number(0, 1) != 0)
            formula += " -r " + std::to_string(time + Number(0, 5)) + "ns";
        return formula;
    }

    // A start has to be one that the sequence of a ring has.
    std::string Counter(int width)
    {
        const int type = Number(1, 2);
        return "\\counter\\TYPE\\" + std::to_string(type) + "\\DIR\\" + Text(1, 2) + "\\RADIX\\2\\START\\" +
               Bits(width, "01") + "\\INC\\" + Bits(std::min(width, 3), "01") + "\\PERIOD\\" + Text(1, 20) +
               "ns\\REV\\" + Text(0, 1);
    }

    std::mt19937 m_random;
};
