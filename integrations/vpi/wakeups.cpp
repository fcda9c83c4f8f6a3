#include "integrations/vpi/wakeups.h"

#include <algorithm>
#include <utility>

#include "integrations/vpi/simulator.h"

namespace tesk::vpi {

void CWakeUps::At(long long time, IWoken &woken)
{
    const auto [place, isNew] = m_calls.try_emplace(time);
    place->second.woken.push_back(&woken);
    if (isNew)
        place->second.callback = CallAfter(std::max(time - Now(), 0LL), Called, this);
}

void CWakeUps::Forget(const IWoken &woken)
{
    std::ranges::replace(m_waking, const_cast<IWoken *>(&woken), nullptr);
    for (auto call = m_calls.begin(); call != m_calls.end();) {
        std::erase(call->second.woken, &woken);
        if (!call->second.woken.empty()) {
            ++call;
            continue;
        }
        // A call for nobody would keep the simulation going.
        CancelCall(call->second.callback);
        call = m_calls.erase(call);
    }
}

PLI_INT32 CWakeUps::Called(t_cb_data *data)
{
    reinterpret_cast<CWakeUps *>(data->user_data)->WakeAll();
    return 0;
}

void CWakeUps::WakeAll()
{
    const long long now = Now();
    while (!m_calls.empty() && m_calls.begin()->first <= now) {
        const auto call = m_calls.extract(m_calls.begin());
        ForgetCall(call.mapped().callback);
        m_waking = std::move(call.mapped().woken);
        for (std::size_t i = 0; i < m_waking.size(); ++i) {
            const long long next = m_waking[i] != nullptr ? m_waking[i]->Wake(now) : -1;
            if (next != -1 && m_waking[i] != nullptr)
                At(std::max(next, now + 1), *m_waking[i]);
        }
        m_waking.clear();
    }
}

}  // namespace tesk::vpi
