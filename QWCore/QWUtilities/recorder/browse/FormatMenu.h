#pragma once

#include "QWUtilities/recorder/model/QWVeskRecording.h"

#include <QWUtilities/qwutilities_private.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace qw
{

/// What the format menu offers. A value.
struct QWUTILITIES_TEST_EXPORT FormatMenu
{
    QStringList titles; ///< English ones, keys of localized() and of RecordingFormats; "" is a separator.
    int selected = 0;   ///< Index of the current item.

    /// The menu for these takes, which offers what every one of them can be saved as. @p isBlue: of the selected
    /// recorder, false without one. @p currentTitle stays selected where it is still offered, else the first item is.
    static FormatMenu forSelection(const std::vector<std::shared_ptr<QWVeskRecording>> &recordings, bool isBlue,
                                   const QString &currentTitle);

    /// Title of the current item.
    QString selectedTitle() const { return titles.value(selected); }

    friend bool operator==(const FormatMenu &, const FormatMenu &) = default;
};

} // namespace qw
