// MAT-files that tests write, and what an import makes of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "waveform/matimporter.h"
#include "waveform/table/tables.h"

inline const std::string ByteType = VectorType(8);

/// A variable of a MAT-file: values column by column.
struct SVariable {
    std::string name;
    std::uint32_t rows = 0;
    std::uint32_t columns = 0;
    std::vector<double> values;
};

/// A file of version 4: of each variable the type 0 (doubles, little-endian), the sizes, the name and the values.
inline std::string MatFileBytes(const std::vector<SVariable> &variables)
{
    std::string bytes;
    for (const SVariable &variable : variables) {
        const std::uint32_t header[] = {0, variable.rows, variable.columns, 0,
                                        static_cast<std::uint32_t>(variable.name.size() + 1)};
        bytes.append(reinterpret_cast<const char *>(header), sizeof header);
        bytes.append(variable.name.c_str(), variable.name.size() + 1);
        bytes.append(reinterpret_cast<const char *>(variable.values.data()), variable.values.size() * sizeof(double));
    }
    return bytes;
}

/// A matrix as it is written on paper, row by row.
inline SVariable Matrix(const std::string &name, const std::vector<std::vector<double>> &rows)
{
    SVariable matrix{name, static_cast<std::uint32_t>(rows.size()), static_cast<std::uint32_t>(rows.at(0).size()), {}};
    for (std::size_t column = 0; column < matrix.columns; ++column) {
        for (const std::vector<double> &row : rows)
            matrix.values.push_back(row.at(column));
    }
    return matrix;
}

/// Tests of imports from MAT-files, at a resolution of one picosecond.
class CMatTest : public CTableTest {
protected:
    /// What `ImportMatFile` gives for the arguments of a "/mat" formula; the signal is the one that is stimulated.
    int ImportHandle(const std::string &arguments, const std::string &type, long long startTime = 0)
    {
        IStimulus::SetupAdditionalInfo("sig", type.c_str());
        return ImportElement(arguments, type, startTime);
    }

    /// The same with whatever was told before of the stimulated signal.
    int ImportElement(const std::string &arguments, const std::string &type, long long startTime = 0)
    {
        CFileFormulaArgs args;
        EXPECT_TRUE(ParseMatArgs(arguments.c_str(), args)) << arguments;
        return ImportMatFile(startTime, args, MakeSignal(type).get());
    }

    static CTexts SamplesOfHandle(int handle)
    {
        if (handle <= 0)
            return {handle == 0 ? "failed" : "no data"};
        return SamplesOf(*g_SampleColumns.at(handle));
    }

    CTexts ImportMat(const std::string &arguments, const std::string &type, long long startTime = 0)
    {
        return SamplesOfHandle(ImportHandle(arguments, type, startTime));
    }

    void WriteVariables(const std::vector<SVariable> &variables) { m_folder.Write("t.mat", MatFileBytes(variables)); }

    /// Imports from a file with one matrix, "v". `arguments` stand behind the file name.
    CTexts ImportMatrix(const std::vector<std::vector<double>> &rows, const std::string &arguments,
                        const std::string &type, long long startTime = 0)
    {
        WriteVariables({Matrix("v", rows)});
        return ImportMat("t.mat," + arguments, type, startTime);
    }
};
