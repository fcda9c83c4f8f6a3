#include "platform/matlab/matfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/matlab/helperprocess.h"
#include "platform/matlab/matstream.h"

namespace {

// A double may be stored in one byte, and compressed.
constexpr std::size_t MemoryPerByte = 10;
constexpr std::size_t LeastMemory = std::size_t(512) << 20;
constexpr std::size_t BytesPerSecond = std::size_t(4) << 20;
constexpr std::chrono::seconds LeastTime(5);
constexpr std::chrono::seconds MostTime(600);
constexpr int WallTimePerProcessorTime = 2;

template <typename T>
bool Take(CHelperProcess &from, T &value)
{
    return from.Read(&value, sizeof value);
}

bool TakeMark(CHelperProcess &from, const char (&mark)[8])
{
    char found[8];
    return Take(from, found) && std::memcmp(found, mark, sizeof found) == 0;
}

bool TakeSizes(CHelperProcess &from, mxArray &array)
{
    std::uint32_t rank = 0;
    if (!Take(from, rank) || rank > MaximumRank)
        return false;
    array.elements = 1;
    for (std::uint32_t i = 0; i < rank; ++i) {
        std::uint64_t size = 0;
        if (!Take(from, size) || __builtin_mul_overflow(array.elements, size, &array.elements))
            return false;
        array.sizes.push_back(size);
    }
    return true;
}

bool TakeDoubles(CHelperProcess &from, mxArray &array)
{
    std::uint64_t count = 0;
    if (!Take(from, count) || count != array.elements || count > from.GetRemaining() / sizeof(double))
        return false;
    array.real = std::make_unique_for_overwrite<double[]>(count);
    return from.Read(array.real.get(), count * sizeof(double));
}

bool TakeName(CHelperProcess &from, std::string &name)
{
    std::uint32_t length = 0;
    if (!Take(from, length) || length > MaximumNameLength)
        return false;
    name.resize(length);
    return from.Read(name.data(), length);
}

bool TakeNode(CHelperProcess &from, std::unique_ptr<mxArray> &array, EDetail detail, int depth);

bool TakeStructure(CHelperProcess &from, mxArray &array, EDetail detail, int depth)
{
    std::uint32_t fields = 0;
    if (!Take(from, fields) || fields > MaximumFields)
        return false;
    array.fieldNames.resize(fields);
    for (std::string &name : array.fieldNames) {
        if (!TakeName(from, name))
            return false;
    }
    // Each node takes a byte at least.
    const std::size_t told = detail == EDetail::Values ? array.elements : std::min<std::size_t>(array.elements, 1);
    std::size_t nodes = 0;
    if (__builtin_mul_overflow(told, std::size_t(fields), &nodes) || nodes > from.GetRemaining())
        return false;
    for (std::size_t i = 0; i < nodes; ++i) {
        if (!TakeNode(from, array.fieldValues.emplace_back(), detail, depth + 1))
            return false;
    }
    return true;
}

bool TakeNode(CHelperProcess &from, std::unique_ptr<mxArray> &array, EDetail detail, int depth)
{
    std::uint8_t isThere = 0;
    if (!Take(from, isThere) || isThere > 1 || depth > MaximumDepth)
        return false;
    if (isThere == 0)
        return true;
    array = std::make_unique<mxArray>();
    std::int32_t classId = 0;
    if (!Take(from, classId) || !TakeSizes(from, *array))
        return false;
    array->classId = classId & ClassMask;
    array->isComplex = (classId & MarkComplex) != 0;
    array->isSparse = (classId & MarkSparse) != 0;
    switch (array->classId) {
    case MatClassDouble: return detail == EDetail::Headers || TakeDoubles(from, *array);
    case MatClassStruct: return TakeStructure(from, *array, detail, depth);
    default: return true;
    }
}

bool TakeList(CHelperProcess &from, std::vector<std::string> &names, std::vector<std::unique_ptr<mxArray>> &infos)
{
    std::uint8_t isThere = 0;
    while (Take(from, isThere) && isThere == 1) {
        if (!TakeName(from, names.emplace_back()) || !TakeNode(from, infos.emplace_back(), EDetail::Headers, 0))
            return false;
        isThere = 2;
    }
    return isThere == 0;
}

std::size_t PhysicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES), size = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || size <= 0)
        return LeastMemory;
    return std::max(LeastMemory, static_cast<std::size_t>(pages) * static_cast<std::size_t>(size));
}

}  // namespace

CMatFile::CMatFile(std::string reader, std::string path) : m_reader(std::move(reader)), m_path(std::move(path))
{
    struct stat status = {};
    if (stat(m_path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return;  // a pipe or a device has no end
    const std::size_t size = static_cast<std::size_t>(status.st_size);
    if (size == 0)
        return;
    const std::size_t memory = size < (std::numeric_limits<std::size_t>::max() - LeastMemory) / MemoryPerByte
                                   ? size * MemoryPerByte + LeastMemory
                                   : PhysicalMemory();
    m_memory = std::min(memory, PhysicalMemory());
    m_time = std::min(LeastTime + std::chrono::seconds(size / BytesPerSecond), MostTime);
}

std::vector<std::string> CMatFile::Command() const
{
    return {m_reader, std::to_string(m_memory), std::to_string(m_time.count()), m_path};
}

void CMatFile::KeepFault(CHelperProcess &process)
{
    const std::string fault = process.Fault();
    if (!fault.empty())
        m_fault = m_reader + ' ' + fault;
}

bool CMatFile::Check()
{
    m_fault.clear();
    if (m_memory == 0)
        return false;
    CHelperProcess process(Command(), m_time * WallTimePerProcessorTime, m_memory);
    const bool isGood = TakeMark(process, StreamBegin) && TakeMark(process, StreamEnd);
    if (!isGood)
        KeepFault(process);
    return isGood;
}

mxArray *CMatFile::ReadVariable(const char *name)
{
    m_fault.clear();
    std::vector<std::string> command = Command();
    command.insert(command.end(), {"variable", name});
    CHelperProcess process(command, m_time * WallTimePerProcessorTime, m_memory);
    std::unique_ptr<mxArray> variable;
    if (!TakeMark(process, StreamBegin) || !TakeNode(process, variable, EDetail::Values, 0) ||
        !TakeMark(process, StreamEnd)) {
        KeepFault(process);
        return nullptr;
    }
    if (variable == nullptr)
        return nullptr;
    return m_variables.emplace_back(std::move(variable)).get();
}

bool CMatFile::ReadList()
{
    m_fault.clear();
    std::vector<std::string> command = Command();
    command.emplace_back("list");
    CHelperProcess process(command, m_time * WallTimePerProcessorTime, m_memory);
    m_isListed = TakeMark(process, StreamBegin) && TakeList(process, m_names, m_infos) && TakeMark(process, StreamEnd);
    if (m_isListed)
        return true;
    KeepFault(process);
    m_names.clear();
    m_infos.clear();
    return false;
}

const std::vector<std::string> *CMatFile::ReadNames()
{
    return m_isListed || ReadList() ? &m_names : nullptr;
}

mxArray *CMatFile::ReadInfo(const char *name)
{
    if (!m_isListed && !ReadList())
        return nullptr;
    const auto found = std::ranges::find(m_names, name);
    return found != m_names.end() ? m_infos[static_cast<std::size_t>(found - m_names.begin())].get() : nullptr;
}
