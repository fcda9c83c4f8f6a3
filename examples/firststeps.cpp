// Turns a formula into a stimulus and walks it.
#include <cstdio>

#include <tesk.h>

int main()
{
    const long long resolution = 1000;  // femtoseconds per tick: times are picoseconds
    IStimulus *stimulus =
        IStimulus::Create("1 10ns, 0 20ns -r 30ns -cancel 100ns", 0, resolution, nullptr, false, false);
    if (stimulus == nullptr)
        return 1;

    for (long long time = stimulus->GetNextEventTime(-1); time != -1; time = stimulus->GetNextEventTime(time)) {
        SimpleString::CStr value;
        if (stimulus->GetValue(time, value))
            std::printf("%lld ps: %s\n", time, static_cast<const char *>(value));
        else
            std::printf("%lld ps: the stimulator has been cancelled\n", time);
    }
    stimulus->Destroy();
}
