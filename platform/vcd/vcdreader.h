// The reader of a VCD file: its commands, times and values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/input/packedinput.h"
#include "platform/tarnutil.h"
#include "platform/vcd/vcdbits.h"
#include "platform/vcd/vcdtext.h"
#include "platform/vcd/vcdvalues.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

/// Calls what `SetProgress` was given.
void ReportProgress(long long bytesRead, long long fileSize);

/// Reads one file (IEEE 1364-2005, clause 18, the extended format included) and drives the writer.
class CVcdReader final : public IValueSteps {
public:
    CVcdReader(const std::string &fileName, IDatabaseStreamWriter &writer);

    /// Reads the declarations. Once, first. @throw std::runtime_error as `KImport_VCD::vcdImport`
    void ReadHead();
    long long GetTime() override { return m_time; }
    bool Step() override;
    long long GetBytesRead() override { return m_bytesRead; }
    long long GetFileSize() override { return m_fileSize; }

private:
    // What is told, but once.
    enum class EOddity { Strings, Empty, UnknownCode, WrongKind, Backward, NoValue, Fraction, Count };

    // Declarations
    std::string_view ReadDeclarations();
    void CheckBegin();
    bool BeginsValues(std::string_view word) const;
    // Commands, among declarations and values
    void ReadCommand(std::string_view word);
    std::string_view ReadBody(std::string_view command);
    void SkipBody(std::string_view command);
    void SetTimescale(std::string_view body);
    void OpenScope(std::string_view body);
    void CloseScope(std::string_view body);
    void Declare(std::string_view body);
    // Values
    bool ReadValues();
    void CheckEnd() const;
    void Finish(bool isWhole);
    void ReadWord(std::string_view word);
    void LeaveOut(std::string_view word);
    void ReadTime(std::string_view word);
    void ReadBit(std::string_view word, std::uint8_t position);
    void ReadParted(std::string_view word, std::uint8_t position);
    void ReadBits(std::string_view word);
    void ReadReal(std::string_view word);
    void SkipString();
    void ReadPort(std::string_view word);
    std::string_view NextOf(std::string_view &value);
    void SetBits(std::string_view word, const CVcdLetters &positions, std::string_view code);
    void Judge(EVcdOutcome outcome, std::string_view code);

    void OnRead(const tesk::CPackedInput &input);
    bool IsFirst(EOddity oddity);
    void Warn(const std::string &text) const;
    std::string AtLine(const std::string &text) const;

    IDatabaseStreamWriter &m_writer;
    std::string m_fileName;
    CVcdValues m_values;
    CVcdText m_text;
    std::string m_body;                    // of the command read last
    std::string m_scope;                   // path of the open scopes
    std::vector<std::size_t> m_scopeEnds;  // its length outside of each open scope
    long long m_variables = 0;
    long long m_mostVariables = 0;
    long long m_nameBytes = 0;  // of all full names
    long long m_mostNameBytes = 0;
    long long m_resolution = 1000000;  // femtoseconds per tick; 1 ns unless the file tells
    long long m_time = 0;
    bool m_isFinished = false;
    bool m_hasCommands = false;     // of those that make a file a VCD
    bool m_areValues = false;       // the declarations are over
    std::string_view m_firstValue;  // read behind the declarations, until it is taken
    long long m_bytesRead = 0;
    long long m_fileSize = 0;
    std::string_view m_openSection;  // "$dumpvars" and the like, waiting for its "$end"; empty outside
    CVcdBits m_bits;
    bool m_isKnown[static_cast<int>(EOddity::Count)] = {};
};

}  // namespace NTARN::NImport
