#pragma once

#include <QWPlatform/qwplatform_export.h>

class QString;
class QVariant;

namespace platform
{

/// Makes texts of values, for cells of tables. Main thread, since texts are in the user's language.
class QWPLATFORM_EXPORT Formatter
{
public:
    virtual ~Formatter();

    /// What @p value reads as; "" when it is not of the formatter's kind.
    virtual QString stringForObjectValue(const QVariant &value) const = 0;
};

} // namespace platform
