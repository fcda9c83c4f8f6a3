// When the simulation calls the module back: one call for each time, whoever asked for it.
#pragma once

#include <map>
#include <vector>

#include <vpi_user.h>

namespace tesk::vpi {

/// Something that acts on the design from time to time.
class IWoken {
public:
    virtual ~IWoken() = default;
    /// @param now  ticks
    /// @return when to be woken next, later than now; -1 for never
    virtual long long Wake(long long now) = 0;
};

class CWakeUps {
public:
    CWakeUps() = default;
    CWakeUps(const CWakeUps &) = delete;

    /// Wakes something at a time, now or later, once; those of one time in the order in which they asked.
    /// @param woken  must stay until then, or be forgotten
    void At(long long time, IWoken &woken);
    /// Nothing is called for it any more.
    void Forget(const IWoken &woken);

private:
    struct SCall {
        std::vector<IWoken *> woken;
        vpiHandle callback = nullptr;
    };

    static PLI_INT32 Called(t_cb_data *data);
    void WakeAll();

    std::map<long long, SCall> m_calls;  // by time
    std::vector<IWoken *> m_waking;      // those of the call that is going on; null for what was forgotten meanwhile
};

}  // namespace tesk::vpi
