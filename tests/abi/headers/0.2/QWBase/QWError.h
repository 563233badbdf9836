#pragma once

#include <QWBase/qwbase_export.h>

#include <QString>

/// Why an operation failed, in words for the user. A value of two texts that hosts copy, so it stays open.
class QWBASE_EXPORT QWError
{
public:
    /// No error.
    QWError() = default;

    /// @p message says what failed, @p reason why (may be empty); both localized.
    explicit QWError(QString message, QString reason = {});

    const QString &message() const { return m_message; } ///< What failed; "" for no error.
    const QString &reason() const { return m_reason; }   ///< Why; may be "".

    /// True when an operation set it.
    bool isSet() const { return !m_message.isEmpty(); }

    /// Shows the error in a modal alert. Main thread.
    void alert() const;

private:
    QString m_message;
    QString m_reason;
};
