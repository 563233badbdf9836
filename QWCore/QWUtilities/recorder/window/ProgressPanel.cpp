#include "ProgressPanel.h"

namespace qw
{

ProgressPanel::ProgressPanel(QWidget *parent)
    : QDialog(parent)
{
}

ProgressPanel::~ProgressPanel() = default;

void ProgressPanel::reject()
{
    Q_EMIT closeRequested();
}

} // namespace qw
