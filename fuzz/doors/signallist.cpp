// Any bytes as a list of signals that a host hands over: of each row the first child, how many it is said to have, its name and
// type, and its mode. Rows may lie inside themselves.
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "fuzz/support/signaltypes.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"

namespace fuzz {

namespace {

constexpr std::size_t RowSize = 4;
constexpr const char *Names[] = {"a", "tb.b", "v(3)", "\\x.y\\", "tb.v(3)(1)", "", "r.f", "a", "..", "(("};

class CRows final : public ISignalListReader {
public:
    explicit CRows(std::string_view rows) : m_rows(rows.substr(0, rows.size() / RowSize * RowSize)) {}

    int Count() const { return static_cast<int>(m_rows.size() / RowSize); }

    int GetCount() override { return Count() > 0 ? 1 + Cell(0, 3) % Count() : 0; }
    int GetChild(int parent, int index) override { return Known(Cell(parent, 0) + index); }
    int GetTop(int index) override { return Known(index); }
    void GetInfo(int id, bool *isBus, int *elements, const char **name, int *mode, long long *maxTime) override
    {
        *elements = Cell(id, 1) % 8;
        *isBus = *elements != 0;
        *name = Names[Cell(id, 2) % std::size(Names)];
        *mode = Cell(id, 3) % 10;
        *maxTime = Cell(id, 3) * 100;
    }
    const char *GetProperty(int id, const char *) override { return Cell(id, 3) % 4 == 1 ? "1" : nullptr; }
    const char *GetTypeInfo(int id) override
    {
        const std::size_t type = Cell(id, 2) / std::size(Names);
        return type < std::size(SignalTypes) ? SignalTypes[type].description : nullptr;
    }

private:
    int Known(int id) const { return id < Count() ? id : -1; }
    std::uint8_t Cell(int id, std::size_t column) const
    {
        const std::size_t place = static_cast<std::size_t>(id) * RowSize + column;
        return place < m_rows.size() ? static_cast<std::uint8_t>(m_rows[place]) : 0;
    }

    std::string_view m_rows;
};

template <class Object>
struct TRelease {
    void operator()(Object *object) const { object->Release(); }
};
template <class Object>
using TOwned = std::unique_ptr<Object, TRelease<Object>>;

// Whether not too many signals are made. There are as many of a row as ways that lead down to it.
bool IsSmall(CRows &rows, int id, int depth, int &left)
{
    if (id < 0)
        return true;
    if (--left < 0 || depth > 200)
        return false;
    bool isBus = false;
    int elements = 0, mode = 0;
    const char *name = nullptr;
    long long maxTime = 0;
    rows.GetInfo(id, &isBus, &elements, &name, &mode, &maxTime);
    for (int i = 0; i < elements; ++i) {
        if (!IsSmall(rows, rows.GetChild(id, i), depth + 1, left))
            return false;
    }
    return true;
}

void LoadTree(CRows &rows)
{
    ISignalContainer *made = nullptr;
    CreateSignalContainer(&made, nullptr);
    const tesk::TReference<ISignalContainer> container(made);
    container->LoadFromList(&rows);
    for (const char *name : Names) {
        ISignal *signal = nullptr;
        if (container->Find(name, &signal) >= 0)
            signal->GetValueTextAt(0, 0);
    }
}

void LoadData(CRows &rows)
{
    tesk::ISignalData *made = nullptr;
    tesk::CreateSignalData(&made);
    const TOwned<tesk::ISignalData> data(made);
    data->Init(&rows, 0);
    data->SetHandle(7);
    for (const char *name : Names)
        data->FindByName(name);
    tesk::IScalarDataContainer *table = nullptr;
    tesk::CreateScalarDataContainer(&table);
    const TOwned<tesk::IScalarDataContainer> scalars(table);
    scalars->LinkSignal(data.get());
    scalars->InitValueSizes(data.get());
    scalars->UnlinkSignal(data.get());
}

}  // namespace

void SignalList(std::string_view input)
{
    CRows rows(input);
    int left = 2000;
    for (int i = 0; i < rows.GetCount(); ++i) {
        if (!IsSmall(rows, rows.GetTop(i), 0, left))
            return;
    }
    LoadTree(rows);
    LoadData(rows);
}

}  // namespace fuzz
