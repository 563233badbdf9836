#include "RecorderListView.h"

namespace qw
{

RecorderListView::~RecorderListView() = default;

void RecorderListView::reloadDevices() {}

void RecorderListView::selectedDeviceDidChange() {}

void RecorderListView::searchStateDidChange() {}

} // namespace qw
