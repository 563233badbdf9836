#pragma once

namespace demo
{

/// How the channels of a sound meet those of a plug-in.
struct ChannelPlan
{
    int passes = 1;      ///< Runs of the plug-in, each with an instance of its own, over the channels in turn.
    bool fold = false;   ///< The sound has more channels than the plug-in: they are mixed into its inputs.
    bool spread = false; ///< One channel goes to the first two inputs alike.
    int kept = 0;        ///< Outputs used of each pass; the others (side outputs, meters) are dropped.

    /// A plug-in with as many outputs as inputs runs once for each group of channels when they divide evenly, so that a
    /// mono effect keeps a stereo sound stereo.
    static ChannelPlan make(int soundChannels, int inputs, int outputs);
};

} // namespace demo
