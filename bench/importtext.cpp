// Imports a signal of a text table once: bench_importtext TABLE SIGNAL SWITCHES TYPE, for bench/compare_text.
#include <sys/resource.h>

#include <cstdio>
#include <string>

#include "core/stimulus.h"

static double Seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Writes the seconds of processor time and the peak memory in kilobytes.
int main(int argc, char **argv)
{
    if (argc != 5)
        return 2;
    IStimulus::SetupAdditionalInfo("signal", argv[4]);
    const std::string formula = std::string("/txt ") + argv[1] + "," + argv[2] + " " + argv[3];
    if (IStimulus::Create(formula.c_str(), 0, 1000, nullptr, false, false) == nullptr)
        return 1;
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.3f %ld\n", Seconds(usage.ru_utime) + Seconds(usage.ru_stime), usage.ru_maxrss);
    IStimulus::OnEndsim();
}
