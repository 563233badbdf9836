#pragma once

#include <QWPlatform/foundation/Bundle.h>

namespace qw
{

/// The framework's own bundle, ready for interface files of this folder: its custom classes are known.
platform::Bundle shellBundle();

/// The application object's name; of a program without one, the host's.
QString applicationName();

} // namespace qw
