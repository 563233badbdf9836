#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QValidator>

/// Lets no name of a preset be typed that would be a hidden file's, the current changes' own, or lie in a subfolder.
class QWUTILITIES_TEST_EXPORT QWKeyboardShortcutPresetTitleFormatter : public QValidator
{
    Q_OBJECT

public:
    explicit QWKeyboardShortcutPresetTitleFormatter(QObject *parent = nullptr);
    ~QWKeyboardShortcutPresetTitleFormatter() override;

    /// Both pass the text through.
    QString stringForObjectValue(const QString &value) const { return value; }
    QString objectValueForString(const QString &text) const { return text; }

    /// Whether a field may hold @p text while it is being typed; it may be empty.
    bool isPartialStringValid(const QString &text) const;

    State validate(QString &text, int &position) const override;
};
