#include "ShortcutEditor.h"

namespace qw
{

ShortcutEditor::~ShortcutEditor() = default;

} // namespace qw
