#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QStringList>
#include <QVariant>

#include <memory>
#include <vector>

class QWShortcutGroup;

namespace qw
{

/// What is wrong with a factory definition, in words for the host's developer. Groups and shortcuts are counted from 1.
namespace DefinitionErrors
{

/// Of the list as it was read; not valid: it could not be.
QStringList inList(const QVariant &list);

/// Menus and menu items that the main menu lacks (nothing where there is no menu bar), and actions that nobody answers
/// who is in the responder chain or could come into it: any widget, delegate of a window, or the application's.
QStringList unknownNames(const std::vector<std::shared_ptr<QWShortcutGroup>> &groups);

/// On standard error, as interface files do it.
void tell(const QStringList &errors);

} // namespace DefinitionErrors

} // namespace qw
