#pragma once

#include "Sound.h"

namespace demo
{

/// The built-in sound: two bars of plucked notes that walk through the stereo field, with pauses in which a delay or
/// a reverb can be heard. 48 kHz, stereo, 4 s, peak −2 dB. The same samples every time.
Sound makeTestTone();

} // namespace demo
