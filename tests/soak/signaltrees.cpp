#include "tests/soak/signaltrees.h"

#include <iterator>
#include <memory>
#include <string>

#include "platform/kestrin.h"
#include "platform/tarn.h"
#include "settings/counter.h"
#include "settings/random.h"
#include "settings/stimstate.h"
#include "settings/stiparser.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signal/wave.h"
#include "signaldata/scalardata.h"
#include "signaldata/signaldata.h"
#include "tests/signal/memorystream.h"

namespace soak {

namespace {

using tesk::TReference;

constexpr const char *Types[] = {
    "e#9#std_logicc9 UX01ZWLH-",
    "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-",
    "i#7#integerrict-2147483648 2147483647",
    "f#4#realrrct-1.79769e+308 1.79769e+308",
    "r#3#bus2 valid e#3#bitc2 01 data i#7#naturalrict0 2147483647",
    "a#15#mem(7 downto 0)1 ricd7 0 e#3#bitc2 01",
    "no type",
};

const char *RandomType(CDice &dice)
{
    return Types[dice.Below(std::size(Types))];
}

TReference<ISignalContainer> NewContainer()
{
    ISignalContainer *container = nullptr;
    CreateSignalContainer(&container, nullptr);
    return TReference<ISignalContainer>(container);
}

void WalkBus(CDice &dice, ISignal &signal)
{
    IBusEventIterator *made = nullptr;
    if (CreateBusEventIterator(&signal, &made) < 0)
        return;
    const TReference<IBusEventIterator> bus(made);
    for (int step = 0; step < 100 && bus->Next() == S_OK; ++step) {
        if (IBusEvent *event = bus->GetEvent()) {
            for (unsigned element = 0; element < event->GetElementCount(); ++element)
                event->GetElementValuePtr(element);
        }
    }
    bus->Seek(static_cast<long long>(dice.Below(1000)), static_cast<int>(dice.Below(6)));
    bus->Reset();
}

void WalkEvents(ISignal &signal)
{
    IEventIterator *made = nullptr;
    if (signal.CreateEventIterator(&made) < 0)
        return;
    const TReference<IEventIterator> events(made);
    IEvent *event = nullptr;
    for (int step = 0; step < 200 && events->Next(1, &event, nullptr) == S_OK; ++step)
        signal.GetEventText(event);
}

void Walk(CDice &dice, ISignal &signal, int depth)
{
    char name[300];
    signal.GetFullName(name, sizeof name);
    signal.SetProperty("Color", "1");
    signal.SetStimulator(0, 1, "1 0ns");
    signal.GetValueTextAt(static_cast<long long>(dice.Below(2000)), 2);
    WalkEvents(signal);
    WalkBus(dice, signal);
    ISignalIterator *made = nullptr;
    if (depth > 8 || signal.CreateSignalIterator(&made) < 0)
        return;
    const TReference<ISignalIterator> children(made);
    ISignal *child = nullptr;
    while (children->Next(1, &child, nullptr) == S_OK)
        Walk(dice, *child, depth + 1);
}

void Walk(CDice &dice, ISignalContainer &container)
{
    for (unsigned index = 0; index < container.GetCount(); ++index) {
        ISignal *signal = nullptr;
        if (container.GetAt(index, &signal) == S_OK)
            Walk(dice, *signal, 0);
    }
}

void SaveAndLoad(CDice &dice, ISignalContainer &container)
{
    CMemoryStream stream;
    container.Save(&stream);
    if (dice.Chance(20) && !stream.bytes.empty())
        stream.bytes[dice.Below(stream.bytes.size())] = static_cast<char>(dice.Below(256));
    const TReference<ISignalContainer> again = NewContainer();
    again->Load(&stream, nullptr);
    Walk(dice, *again);
}

}  // namespace

void UseSignals(CDice &dice, const SFile &file)
try {
    const std::unique_ptr<NTARN::IDatabaseReader> reader(NTARN::IDatabaseReader::create(file.path.c_str(), false));
    if (!reader)
        return;
    const TReference<ISignalContainer> container = NewContainer();
    container->LoadFromDatabase(reader.get());
    Walk(dice, *container);
    SaveAndLoad(dice, *container);
    if (dice.Chance(50))
        container->Clear();
} catch (const NTARN::XFileCorrupted &) {
} catch (const NTARN::XFileDoesNotExist &) {
}

void MakeSignals(CDice &dice)
{
    const TReference<ISignalContainer> container = NewContainer();
    for (std::size_t signals = dice.Below(10); signals > 0; --signals) {
        ISignal *made = nullptr;
        if (CreateSignal(RandomType(dice), nullptr, &made) < 0)
            continue;
        const TReference<ISignal> signal(made);
        signal->SetName(("signal" + dice.Number(5)).c_str());
        container->Add(signal.get());
        ISignalWave *const wave = signal->GetWave();
        for (long long time = 0; wave != nullptr && time < 50; time += 1 + static_cast<long long>(dice.Below(10))) {
            const double value = static_cast<double>(dice.Below(256));
            wave->AddEvent(time, 0, &value, wave->GetValueWidth());
        }
    }
    Walk(dice, *container);
    SaveAndLoad(dice, *container);
}

void UseSettings(CDice &dice)
{
    tesk::ISignalDataContainer *datas = nullptr;
    tesk::IScalarDataContainer *scalars = nullptr;
    tesk::CreateSignalDataContainer(&datas);
    tesk::CreateScalarDataContainer(&scalars);
    for (std::size_t count = dice.Below(8); count > 0; --count) {
        tesk::ISignalData *data = nullptr;
        if (tesk::CreateSignalData(&data) < 0)
            continue;
        data->SetFullName(("tb.s" + dice.Number(9)).c_str());
        data->SetTypeInfo(RandomType(dice));
        data->SetHandle(static_cast<int>(dice.Below(9)));
        data->AddScalar(static_cast<int>(dice.Below(20)));
        data->SetProperty("Mode", "1");
        datas->Add(data);
        scalars->LinkSignal(data);
        if (dice.Chance(30))
            scalars->UnlinkSignal(data);
        data->Release();
    }
    datas->Release();
    scalars->Release();

    CStimState states;
    states.Create((dice.Number(100) + "ns;" + dice.Number(200) + "us;x;" + dice.Number(5)).c_str());
    char buffer[200];
    states.Store(buffer, sizeof buffer);
    CStiParser parser;
    parser.Init(("FRM:FRM:" + std::string(dice.Pick({"Drive", "Deposit", "x"})) + ":\"a:b\":info:1:10ns").c_str());
    CStiParser copy;
    copy = parser;
    tesk::CRandomStimulusInfo random;
    random.InitializeFromInternalFormula(("\\RANDOM\\" + dice.Number(9) + "\\5\\1\\10\\10ns").c_str());
    tesk::CCounterStimulusInfo counter;
    counter.FromFormula("\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1\\PERIOD\\10 ns\\REV\\0");
    const Kestrin::KTypeInfo type(RandomType(dice));
    type.GetValueString_OldFormat(buffer, 0, 0, 0, false);
}

}  // namespace soak
