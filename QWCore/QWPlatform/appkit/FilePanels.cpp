#include "FilePanels.h"

namespace platform
{

FilePanels::~FilePanels() = default;

} // namespace platform
