#pragma once

#include <QWPlatform/appkit/Selector.h>

#include <QVariant>

namespace qw
{

/// A movement of the scroll wheel and the action that it sends. Kept as the dictionary that it came as, unknown entries
/// included; an entry of a wrong type counts as 0, false or no action.
class ScrollWheelBinding
{
public:
    ScrollWheelBinding() = default;
    explicit ScrollWheelBinding(const QVariantMap &record);

    /// As stored: "vertical", "modifiers", "action", "reverse".
    const QVariantMap &record() const { return m_record; }

    bool isVertical() const { return m_isVertical; }
    bool isReversed() const { return m_isReversed; }

    /// Exact mask; one with other bits than the five never matches.
    qlonglong modifiers() const { return m_modifiers; }
    const platform::Selector &action() const { return m_action; }

    void setVertical(bool vertical) { _set("vertical", vertical); }
    void setReversed(bool reversed) { _set("reverse", reversed); }
    void setModifiers(qlonglong modifiers) { _set("modifiers", modifiers); }
    void setAction(const QString &action) { _set("action", action); }

    bool matches(bool vertical, quint32 modifiers) const
    {
        return m_modifiers == modifiers && m_isVertical == vertical;
    }

private:
    void _set(const QString &key, const QVariant &value);
    void _read();

    // What the record says, for matching within nanoseconds.
    qlonglong m_modifiers = 0;
    bool m_isVertical = false;
    bool m_isReversed = false;
    platform::Selector m_action;
    QVariantMap m_record;
};

} // namespace qw
