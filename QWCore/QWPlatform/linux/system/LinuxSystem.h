#pragma once

namespace platform
{

class System;

/// The Linux machine. Made on first use; HOME and QW_LIBRARY_ROOT say where its folders are.
System &linuxSystem();

} // namespace platform
