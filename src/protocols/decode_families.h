// One frame reader per protocol family, as the decoder registry creates them.
#pragma once

#include <memory>

#include "protocols/decode_stream.h"

namespace vorna {

// HSD domes read some presets as their menu and patterns.
std::unique_ptr<FrameReader> MakePelcoDReader(bool hsd);
std::unique_ptr<FrameReader> MakePelcoPReader();
std::unique_ptr<FrameReader> MakeSensormaticReader();
std::unique_ptr<FrameReader> MakeBoschReader();
std::unique_ptr<FrameReader> MakeGEImpacReader();
std::unique_ptr<FrameReader> MakeGEASCIIReader();
std::unique_ptr<FrameReader> MakePanasonicReader();
// The MegaPower 48 pans and tilts through keys of their own.
std::unique_ptr<FrameReader> MakeAdMegaPowerReader(bool mp48);

}  // namespace vorna
