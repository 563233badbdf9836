#pragma once

#include "Formatter.h"

namespace platform
{

/// Dates and times in the short forms of the user's language and country, in the user's time zone.
class QWPLATFORM_EXPORT DateFormatter : public Formatter
{
public:
    ~DateFormatter() override;

    /// Short date and short time of a QDateTime; "" for anything else, and for one that is not valid.
    QString stringForObjectValue(const QVariant &value) const override;
};

} // namespace platform
