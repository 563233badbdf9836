#pragma once

#include <QString>

class QPushButton;

namespace qw
{

/// The capture sheet's button that clears the key of the other shortcut which has it. Shown only while there is one,
/// its room is kept. It can be given the keyboard, which the captured key has otherwise.
class ClearOtherButton
{
public:
    /// @p button is not owned and outlives this; null: there is none, and nothing is offered.
    explicit ClearOtherButton(QPushButton *button);

    /// For the shortcut of that name; "" hides it.
    void show(const QString &name);

    bool canBeOffered() const;
    bool isOffered() const { return m_isOffered; } ///< It has the keyboard: Return is for it.
    void offer();
    void withdraw() { m_isOffered = false; }

private:
    QPushButton *m_button;
    bool m_isOffered = false;
};

} // namespace qw
