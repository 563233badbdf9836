#pragma once

#include <QWBase/qwbase_export.h>
#include <QWPlatform/foundation/Formatter.h>

/// Truth values as "Yes" and "No". Main thread.
class QWBASE_EXPORT QWBooleanFormatter : public platform::Formatter
{
public:
    ~QWBooleanFormatter() override;

    /// Of a number, "No" for 0; "" for what is neither.
    QString stringForObjectValue(const QVariant &value) const override;
};
