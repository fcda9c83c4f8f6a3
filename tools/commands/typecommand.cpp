// tesk type: a type description, taken apart.
#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/types/typereader.h"
#include "tools/commands/commands.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"

namespace {

using Kestrin::ETypeKind;
using Kestrin::KTypeInfo;
using Kestrin::STypeDescription;

constexpr std::size_t LabelWidth = 13;
constexpr std::size_t IndentWidth = 2;

// By kind.
constexpr std::array<const char *, 7> KindNames = {"invalid", "enumeration", "integer", "real",
                                                   "array",   "record",      "physical"};

template <class T>
std::string RangeText(const Kestrin::TTypeRange<T> &range)
{
    std::ostringstream text;
    text << range.left << (range.downto ? " downto " : " to ") << range.right
         << (range.constrained ? "" : ", unconstrained");
    return text.str();
}

// The bounds of a number or of each dimension.
std::string RangeText(const STypeDescription &parts)
{
    if (parts.kind == ETypeKind::Integer || parts.kind == ETypeKind::Physical)
        return RangeText(parts.range);
    if (parts.kind == ETypeKind::Real)
        return RangeText(parts.realRange);
    std::string text;
    for (const auto &dimension : parts.dimensions)
        text += (text.empty() ? "" : "; ") + RangeText(dimension);
    return text;
}

std::string LiteralsText(const STypeDescription &parts)
{
    std::string text = std::to_string(parts.literals.size());
    for (std::size_t i = 0; i < parts.literals.size(); ++i)
        text += (i == 0 ? ": " : " ") + Printable(parts.literals[i]);
    return text;
}

std::string SizeText(unsigned bytes)
{
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

void PrintLine(std::size_t depth, const std::string &label, const std::string &text)
{
    std::cout << std::string(depth * IndentWidth, ' ') << label;
    if (!text.empty())
        std::cout << std::string(LabelWidth - std::min(LabelWidth, label.size()), ' ') << text;
    std::cout << '\n';
}

void PrintType(std::size_t depth, const KTypeInfo &type)
{
    const auto parts = Kestrin::ReadTypeDescription(type.GetTypeInfoString());
    PrintLine(depth, "description", parts->text);
    PrintLine(depth, "kind", KindNames[static_cast<std::size_t>(parts->kind)]);
    PrintLine(depth, "name", Printable(parts->identifier));
    if (type.IsVerilog())
        PrintLine(depth, "language", "Verilog");
    if (type.IsSigned())
        PrintLine(depth, "signed", "yes");
    if (parts->kind == ETypeKind::Enumeration)
        PrintLine(depth, "literals", LiteralsText(*parts));
    else if (parts->kind != ETypeKind::Record)
        PrintLine(depth, "range", RangeText(*parts));
    PrintLine(depth, "elements", std::to_string(type.GetNbOfElements()));
    PrintLine(depth, "scalar size", SizeText(type.GetScalarSize_OldFormat()));
    PrintLine(depth, "simple size", SizeText(type.GetSimpleSize_OldFormat()));
}

void PrintWithInnerTypes(std::size_t depth, const KTypeInfo &type)
{
    PrintType(depth, type);
    if (const KTypeInfo *element = type.GetArrayElementKTypeInfo()) {
        PrintLine(depth, "element", "");
        PrintWithInnerTypes(depth + 1, *element);
    }
    for (int i = 0; i < type.GetNbOfFields(); ++i) {
        PrintLine(depth, "field", Printable(type.GetFieldName(i)));
        PrintWithInnerTypes(depth + 1, *type.GetFieldKTypeInfo(i));
    }
}

}  // namespace

void AddTypeCommand(CCommandLine &commandLine)
{
    CCommand command = commandLine.Add("type", "Take a type description apart");
    const auto type = std::make_shared<std::string>();
    command.Argument("type", *type, "A type such as bit or std_logic_vector(7 downto 0), or a whole description");
    command.Footer("Sizes are those of a value's bytes; a type that is not simple has none.\n"
                   "Example: tesk type \"std_logic_vector(7 downto 0)\"");
    command.Action([type] {
        PrintWithInnerTypes(0, KTypeInfo(ReadTypeArgument(*type).c_str()));
        return 0;
    });
}
