#include "ChannelPlan.h"

#include <algorithm>

namespace demo
{

ChannelPlan ChannelPlan::make(int soundChannels, int inputs, int outputs)
{
    ChannelPlan plan;
    plan.kept = std::min(outputs, std::max(soundChannels, 2));
    if (inputs == 0)
        return plan;
    plan.spread = soundChannels == 1 && inputs > 1;
    if (soundChannels > inputs && inputs == outputs && soundChannels % inputs == 0) {
        plan.passes = soundChannels / inputs;
        plan.kept = outputs;
    } else {
        plan.fold = soundChannels > inputs;
    }
    return plan;
}

} // namespace demo
