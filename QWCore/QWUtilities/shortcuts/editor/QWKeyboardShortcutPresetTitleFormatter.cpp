#include "QWKeyboardShortcutPresetTitleFormatter.h"

QWKeyboardShortcutPresetTitleFormatter::QWKeyboardShortcutPresetTitleFormatter(QObject *parent)
    : QValidator(parent)
{
}

QWKeyboardShortcutPresetTitleFormatter::~QWKeyboardShortcutPresetTitleFormatter() = default;

bool QWKeyboardShortcutPresetTitleFormatter::isPartialStringValid(const QString &text) const
{
    return !text.startsWith('.') && !text.startsWith('_') && !text.contains('/');
}

QValidator::State QWKeyboardShortcutPresetTitleFormatter::validate(QString &text, int &) const
{
    return isPartialStringValid(text) ? Acceptable : Invalid;
}
