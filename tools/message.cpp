#include "tools/message.h"

#include <cstdio>
#include <map>

#include "tools/output.h"
#include "tools/quote.h"

namespace {

std::map<std::string, std::string> &ShownPaths()
{
    static std::map<std::string, std::string> s_paths;
    return s_paths;
}

std::string WithShownPaths(std::string text)
{
    for (const auto &[path, shown] : ShownPaths()) {
        for (std::size_t at = text.find(path); at != text.npos; at = text.find(path, at + shown.size()))
            text.replace(at, path.size(), shown);
    }
    return text;
}

std::string Line(std::string_view text)
{
    return MessageLine(WithShownPaths(std::string(text)));
}

}  // namespace

void TellRefusal(std::string_view text)
{
    std::fprintf(stderr, "%s %s\n", Coloured("tesk:", EColour::Red).c_str(), Line(text).c_str());
}

void TellWarning(std::string_view text)
{
    std::fprintf(stderr, "tesk: %s: %s\n", Coloured("warning", EColour::Yellow).c_str(), Line(text).c_str());
}

void ShowPathAs(const std::string &path, const std::string &shown)
{
    ShownPaths()[path] = shown;
}
