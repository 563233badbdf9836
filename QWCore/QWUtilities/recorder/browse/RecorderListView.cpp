#include "RecorderListView.h"

namespace qw
{

RecorderListView::~RecorderListView() = default;

void RecorderListView::reloadDevices() {}

void RecorderListView::selectedDeviceDidChange() {}

void RecorderListView::deviceWasMadeAfresh(const QWVeskDevice &, const std::shared_ptr<QWVeskDevice> &) {}

void RecorderListView::searchStateDidChange() {}

} // namespace qw
