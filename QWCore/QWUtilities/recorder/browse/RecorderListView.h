#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <memory>

class QWVeskDevice;

namespace qw
{

/// What shows a RecorderList. Main thread.
class QWUTILITIES_TEST_EXPORT RecorderListView
{
public:
    virtual ~RecorderListView();

    /// Shows RecorderList::devices() anew, all groups expanded. Called within refreshDevices(); what the view's
    /// selection does meanwhile is not the user's doing (RecorderList::isRefreshingDevices()).
    virtual void reloadDevices();

    /// The selected recorder was set, to the same one too, or to none: the row RecorderList::selectedDeviceIndex() is
    /// to be the selected one, no take is selected, the takes and what can be saved are shown anew.
    virtual void selectedDeviceDidChange();

    /// @p device has taken the place of @p former, whose service is the same: what shows that shows this from now on,
    /// and the selection stays.
    virtual void deviceWasMadeAfresh(const QWVeskDevice &former, const std::shared_ptr<QWVeskDevice> &device);

    /// RecorderList::state() or the number of recorders may be another; for the text where none is shown.
    virtual void searchStateDidChange();
};

} // namespace qw
