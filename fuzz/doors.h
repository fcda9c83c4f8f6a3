// The doors of the library and the tool at which anything may arrive. Each takes any input, of any length; to crash, hang, ask for
// much memory or read out of bounds is a finding, and so is std::abort where what was read contradicts itself.
#pragma once

#include <string_view>

namespace fuzz {

void Bench(std::string_view input);
void Dispatcher(std::string_view input);
void FileFormula(std::string_view input);
void Forces(std::string_view input);
void Formula(std::string_view input);
void Fst(std::string_view input);
void Ghw(std::string_view input);
void Information(std::string_view input);
void MatFile(std::string_view input);
void MatPath(std::string_view input);
void MatStream(std::string_view input);
void Notation(std::string_view input);
void Numbers(std::string_view input);
void SignalList(std::string_view input);
void SignalTree(std::string_view input);
void States(std::string_view input);
void Stream(std::string_view input);
void Switches(std::string_view input);
void TextTable(std::string_view input);
void Types(std::string_view input);
void Vcd(std::string_view input);
void WaveJson(std::string_view input);

}  // namespace fuzz
