#include "ScrollWheelBinding.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

namespace qw
{

ScrollWheelBinding::ScrollWheelBinding(const QVariantMap &record)
    : m_record(record)
{
    _read();
}

void ScrollWheelBinding::_set(const QString &key, const QVariant &value)
{
    m_record.insert(key, value);
    _read();
}

void ScrollWheelBinding::_read()
{
    const QVariant action = m_record.value("action");
    m_isVertical = platform::truthOf(m_record.value("vertical"));
    m_modifiers = platform::integerOf(m_record.value("modifiers"));
    m_action = action.typeId() == QMetaType::QString ? platform::Selector(action.toString()) : platform::Selector();
    m_isReversed = platform::truthOf(m_record.value("reverse"));
}

} // namespace qw
