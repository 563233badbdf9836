#include "ShortcutEditor.h"

#include "QWUtilities/shortcuts/registry/ShortcutRegistry.h"

namespace qw
{

ShortcutEditor::~ShortcutEditor() = default;

ShortcutEditor *ShortcutEditor::of(const QWKeyboardShortcuts &registry)
{
    return registry.d->m_editor.get();
}

void ShortcutEditor::setOf(const QWKeyboardShortcuts &registry, std::unique_ptr<ShortcutEditor> editor)
{
    registry.d->m_editor = std::move(editor);
}

} // namespace qw
