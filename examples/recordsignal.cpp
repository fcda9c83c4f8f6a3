// Builds a record signal, gives its fields events, and walks the events of the record as a whole.
#include <cstdio>
#include <vector>

#include <tesk.h>

namespace {

// Fields of a bus: a bit and a vector of two. The leaves of its tree are the bit and the two bits of the vector.
constexpr char Type[] = "r#3#bus2 valid e#3#bitc2 01 data a#22#bit_vector(1 downto 0)1 ricd1 0 e#3#bitc2 01";

// The signals without children below `signal`, depth first. They live as long as it does.
void CollectLeaves(ISignal *signal, std::vector<ISignal *> &leaves)
{
    ISignalIterator *children = nullptr;
    if (signal->CreateSignalIterator(&children) < 0) {
        leaves.push_back(signal);
        return;
    }
    ISignal *child = nullptr;
    while (children->Next(1, &child, nullptr) == S_OK)
        CollectLeaves(child, leaves);
    children->Release();
}

void AddEvent(ISignal *leaf, long long time, const char *text)
{
    unsigned char value[8] = {};
    if (leaf->ParseValue(text, value, sizeof value) >= 0)
        leaf->GetWave()->AddEvent(time, 0, value, sizeof value);
}

}  // namespace

int main()
{
    ISignal *signal = nullptr;
    if (CreateSignal(Type, nullptr, &signal) < 0)
        return 1;
    signal->SetName("bus");
    std::vector<ISignal *> leaves;
    CollectLeaves(signal, leaves);
    for (ISignal *leaf : leaves)
        AddEvent(leaf, 0, "0");
    AddEvent(leaves[0], 10, "1");
    AddEvent(leaves[1], 10, "1");
    AddEvent(leaves[2], 20, "1");

    IBusEventIterator *iterator = nullptr;
    if (signal->CreateBusEventIterator(&iterator) < 0)
        return 1;
    while (iterator->Next() == S_OK) {
        IBusEvent *event = iterator->GetEvent();
        std::printf("%lld:", event->GetTime());
        for (unsigned i = 0; i < event->GetElementCount(); ++i) {
            char name[100];
            leaves[i]->GetFullName(name, sizeof name);
            std::printf(" %s=%s", name, leaves[i]->GetValueText(event->GetElementValuePtr(i)));
        }
        std::printf("\n");
    }
    iterator->Release();
    signal->Release();
}
