#pragma once

#include <QWBase/qwbase_export.h>
#include <QWPlatform/foundation/Formatter.h>

#include <memory>

/// Reads lengths of time aloud to the eye: "3:07", "1:02:45". Main thread.
class QWBASE_EXPORT QWTimeFormatter : public platform::Formatter
{
public:
    /// How a length reads; any other number is taken for the first.
    enum TimeFormat
    {
        MinutesAndSeconds = 12 ///< Minutes and seconds, hours in front of them from one hour on.
    };

    /// One of format MinutesAndSeconds.
    QWTimeFormatter();
    ~QWTimeFormatter() override;

    int timeFormat() const;         ///< As set, one of TimeFormat or not.
    void setTimeFormat(int format); ///< Sets timeFormat().

    /// @p value is a number of seconds, rounded to a whole one. "" for what is no number, and for a length that nothing
    /// has: negative, infinite, or not a number.
    QString stringForObjectValue(const QVariant &value) const override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
