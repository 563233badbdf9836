#include "StateWriter.h"

namespace qw
{

StateWriter::~StateWriter() = default;

} // namespace qw
