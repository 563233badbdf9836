#include "ScrollWheelBinding.h"

#include <cmath>

namespace qw
{

namespace
{
/// Cut to a whole number; 0 for what is none.
qlonglong wholeNumber(const QVariant &value)
{
    constexpr double limit = 9.2e18;
    bool isWhole = false;
    if (value.typeId() != QMetaType::Double) {
        const qlonglong number = value.toLongLong(&isWhole);
        if (isWhole)
            return number;
    }
    const double number = value.toDouble();
    return std::fabs(number) < limit ? static_cast<qlonglong>(number) : 0;
}

/// Any number but 0; of the texts, those that old files hold for "yes".
bool truth(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return value.toDouble() != 0;
    const QString text = value.toString();
    return text.startsWith(u'y', Qt::CaseInsensitive) || text.startsWith(u't', Qt::CaseInsensitive) ||
           wholeNumber(value) != 0;
}
} // namespace

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
    m_isVertical = truth(m_record.value("vertical"));
    m_modifiers = wholeNumber(m_record.value("modifiers"));
    m_action = action.typeId() == QMetaType::QString ? platform::Selector(action.toString()) : platform::Selector();
    m_isReversed = truth(m_record.value("reverse"));
}

} // namespace qw
