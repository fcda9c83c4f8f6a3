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

    // A random stimulus, and one that replays a file, may have a value before their first change.
    SimpleString::CStr value;
    long long time = stimulus->GetNextEventTime(-1);
    if (time != 0 && stimulus->GetValue(0, value) && !value.IsEmpty())
        std::printf("0 ps: %s\n", static_cast<const char *>(value));

    for (; time != -1; time = stimulus->GetNextEventTime(time)) {
        if (stimulus->GetValue(time, value))
            std::printf("%lld ps: %s\n", time, static_cast<const char *>(value));
        else
            std::printf("%lld ps: the stimulator has been cancelled\n", time);
    }
    stimulus->Destroy();
}
