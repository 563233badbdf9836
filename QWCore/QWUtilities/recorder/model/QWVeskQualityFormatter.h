#pragma once

#include <QWPlatform/foundation/Formatter.h>
#include <QWUtilities/qwutilities_private.h>

/// The quality of a take as a word of the user's language.
class QWUTILITIES_TEST_EXPORT QWVeskQualityFormatter : public platform::Formatter
{
public:
    ~QWVeskQualityFormatter() override;

    /// 0, 1 and 2 are "High", "Medium" and "Low"; anything else is "unknown quality", in no other language.
    QString stringForObjectValue(const QVariant &value) const override;
};
