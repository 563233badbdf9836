#pragma once

#include "QWKeyboardShortcutPresetTitleFormatter.h"

#include <QObject>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace qw
{

/// Wires the sheet that asks for the name of a preset.
class SavePresetSheet : public QObject
{
    Q_OBJECT

public:
    /// None is owned; all outlive this.
    struct Outlets
    {
        QWidget *panel = nullptr;
        QLineEdit *nameText = nullptr;
        QPushButton *saveButton = nullptr;
        QLabel *ruleText = nullptr; ///< Says which names there are; may be missing.
    };

    explicit SavePresetSheet(const Outlets &outlets);
    ~SavePresetSheet() override;

    /// @p didEnd gets the tag of the button that was pressed; 1 saves.
    void begin(QWidget &window, std::function<void(int returnCode)> didEnd);

    /// Ends with the sender's tag.
    void close(const QObject *sender);

    void end(); ///< Closes without saving; nothing when it is not up.

    QString name() const;

private:
    void controlTextDidChange();
    void _sayRule();

    Outlets m_outlets;
    QWKeyboardShortcutPresetTitleFormatter m_formatter;
};

} // namespace qw
