// Random and hostile arguments of file formulas.
#include <cctype>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/fileformulaargs.h"
#include "core/fileformulaargsreading.h"
#include "logcatcher.h"
#include <gtest/gtest.h>

namespace {

// The same arguments read once more, byte by byte through a plain pointer, as a second opinion.
class CSecondOpinion {
public:
    CSecondOpinion(const char *text, bool custom, bool mat) : m_at(text), m_custom(custom), m_mat(mat) {}

    // What `Read` gives.
    std::string Run()
    {
        CFileFormulaArgs args;
        if (!Arguments())
            return "";
        args.m_file = m_file.c_str();
        args.m_signal = m_signal.c_str();
        args.m_start = m_start.c_str();
        args.m_end = m_end.c_str();
        args.m_offset = m_offset.c_str();
        args.m_repeat = m_repeat.c_str();
        args.m_cancel = m_cancel.c_str();
        args.m_interval = m_interval.c_str();
        args.m_timeSource = m_source.c_str();
        args.m_point = m_point.c_str();
        args.m_flags = m_flags;
        return Show(args);
    }

private:
    void Blanks()
    {
        while (*m_at == ' ')
            ++m_at;
    }
    void BlanksAndQuotes()
    {
        while (*m_at == ' ' || *m_at == '"')
            ++m_at;
    }
    void Digits()
    {
        while (isdigit(static_cast<unsigned char>(*m_at)))
            m_buffer += *m_at++;
    }
    void Letters()
    {
        while (isalpha(static_cast<unsigned char>(*m_at)))
            m_buffer += *m_at++;
    }
    void Move(std::string &to)
    {
        to = m_buffer;
        m_buffer.clear();
    }
    bool Eat(const char *prefix)
    {
        if (strncmp(m_at, prefix, strlen(prefix)) != 0)
            return false;
        m_at += strlen(prefix);
        return true;
    }
    void Word(std::string &to)
    {
        Blanks();
        to.clear();
        while (*m_at != 0 && *m_at != ' ')
            to += *m_at++;
    }

    bool Arguments()
    {
        Blanks();
        while (*m_at != 0 && *m_at != ',')
            m_file += *m_at++;
        while (!m_file.empty() && isspace(static_cast<unsigned char>(m_file.back())))
            m_file.pop_back();
        while (!m_file.empty() && isspace(static_cast<unsigned char>(m_file.front())))
            m_file.erase(0, 1);
        if (*m_at == 0)
            return !m_custom;
        ++m_at;
        Blanks();
        if (*m_at == 0)
            return false;
        if (!Signal())
            return false;
        if (*m_at == 0)
            return true;
        BlanksAndQuotes();
        if (*m_at == ',') {
            ++m_at;
            Blanks();
            if (*m_at == 0)
                return false;
            while (isdigit(static_cast<unsigned char>(*m_at)) || *m_at == '.')
                m_buffer += *m_at++;
            Blanks();
            if (*m_at != ',') {
                Letters();
                BlanksAndQuotes();
            }
            Move(m_start);
            if (*m_at == ',') {
                ++m_at;
                Blanks();
                if (*m_at == 0)
                    return false;
                Digits();
                Blanks();
                Letters();
                BlanksAndQuotes();
                Move(m_end);
            }
        }
        if (*m_at == 0)
            return true;
        if (*m_at == '@')
            m_buffer += *m_at++;
        if (isdigit(static_cast<unsigned char>(*m_at))) {
            Digits();
            if (*m_at == 0)
                return false;
            Blanks();
            Letters();
            Move(m_offset);
            Blanks();
        }
        if (*m_at != '-')
            return *m_at == 0;
        for (;;) {
            if (!Switch())
                return false;
            Blanks();
            if (*m_at == 0)
                return true;
            if (*m_at != '-')
                return false;
        }
    }

    bool Signal()
    {
        bool escaped = false, inBrackets = false, fault = false;
        for (; *m_at != 0 && !fault;) {
            if (!escaped && !inBrackets && (*m_at == ' ' || *m_at == '"' || *m_at == ','))
                break;
            if (!escaped && *m_at == '(') {
                fault = inBrackets;
                inBrackets = true;
            } else if (!escaped && *m_at == ')') {
                fault = !inBrackets;
                inBrackets = false;
            } else if (*m_at == '\\') {
                escaped = !escaped;
            }
            if (!fault)
                m_signal += *m_at++;
        }
        return !escaped && !inBrackets && !fault;
    }

    bool Time(bool at, std::string &to)
    {
        Blanks();
        if (*m_at == 0)
            return false;
        if (at && *m_at == '@')
            m_buffer += *m_at++;
        Digits();
        if (*m_at == 0)
            return false;
        Letters();
        Move(to);
        return true;
    }

    bool Switch()
    {
        if (Eat("-cancel"))
            return Time(true, m_cancel);
        if (m_custom)
            return Eat("-r") && Time(false, m_repeat);
        if (Eat("-row")) {
            m_flags |= CFileFormulaArgs::FLAG_ROW;
            return true;
        }
        if (Eat("-rel")) {
            m_flags |= CFileFormulaArgs::FLAG_REL;
            return true;
        }
        if (Eat("-r"))
            return Time(false, m_repeat);
        if (Eat("-col") || Eat("-abs") || Eat("-fixed_step"))
            return true;
        if (Eat("-interval")) {
            Blanks();
            if (*m_at == 0)
                return false;
            Digits();
            Letters();
            if (m_buffer.empty() || !isdigit(static_cast<unsigned char>(m_buffer[0])) ||
                isdigit(static_cast<unsigned char>(m_buffer.back())))
                return false;
            Move(m_interval);
            return true;
        }
        if (Eat("-time_points")) {
            Word(m_source);
            m_flags |= CFileFormulaArgs::FLAG_TIME_POINTS;
            return true;
        }
        if (m_mat && Eat("-time_var")) {
            Word(m_source);
            return true;
        }
        if (m_mat && Eat("-point")) {
            Word(m_point);
            return true;
        }
        return false;
    }

    const char *m_at;
    bool m_custom, m_mat;
    std::string m_buffer, m_file, m_signal, m_start, m_end, m_offset, m_repeat, m_cancel, m_interval, m_source, m_point;
    unsigned m_flags = 0;
};

std::string RandomText(std::mt19937 &random, const std::vector<std::string> &pieces, unsigned most)
{
    std::string text;
    for (auto count = random() % (most + 1); count > 0; --count)
        text += pieces[random() % pieces.size()];
    return text;
}

void CompareWithSecondOpinion(const std::string &text)
{
    for (const auto &parser : Parsers) {
        CSecondOpinion opinion(text.c_str(), parser.parse == ParseCustomArgs, parser.parse == ParseMatArgs);
        ASSERT_EQ(Read(parser.parse, text), opinion.Run()) << parser.keyword << " " << text;
    }
}

TEST(FileFormulaArgs, AgreeWithASecondOpinionOnAnyBytes)
{
    const CLogCatcher log;
    const std::vector<std::string> pieces = {" ", " ",  ",",  ",", "\"", "@", "-", "(",  ")",   "\\",
                                             "1", "20", "ns", "s", ".",  "r", "x", "\t", "\xE4"};
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round)
        CompareWithSecondOpinion("f,s" + RandomText(random, pieces, 12));
}

TEST(FileFormulaArgs, AgreeWithASecondOpinionOnArguments)
{
    const CLogCatcher log;
    const std::vector<std::string> pieces = {
        " -cancel",   " -row",         " -rel",      " -r",     " -col", " -abs", " -fixed_step",
        " -interval", " -time_points", " -time_var", " -point", " ",     " 5ns",  " @7 us",
        "10ns",       " 10ns",         " @",         "t",       " t",    ",1ns",  ",2.5 us"};
    std::mt19937 random(2);
    for (int round = 0; round < 20000; ++round)
        CompareWithSecondOpinion("f,s" + RandomText(random, pieces, 8));
}

TEST(FileFormulaArgs, SurviveAMegabyteOfAnything)
{
    const CLogCatcher log;
    constexpr std::size_t Size = 1 << 20;
    std::mt19937 random(3);
    std::string noise(Size, ' ');
    for (char &c : noise)
        c = static_cast<char>(random() % 255 + 1);
    std::string repeats = "f,s ";
    while (repeats.size() < Size)
        repeats += "-r";
    std::vector<std::string> texts = {noise, "f,s" + noise, "f,s -time_points " + noise, repeats};
    for (const char c : {' ', ',', '"', '(', ')', '\\', '@', '-', '1', 'a', '.'}) {
        texts.emplace_back(Size, c);
        for (const char *front : {"f,", "f,s", "f,s ", "f,s,", "f,s,1,", "f,s -r ", "f,s -interval ", "f,s -point "})
            texts.push_back(front + std::string(Size, c));
    }
    for (const std::string &text : texts) {
        for (const auto &parser : Parsers) {
            CFileFormulaArgs args;
            parser.parse(text.c_str(), args);
        }
    }
}

}  // namespace
