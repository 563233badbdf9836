#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QDialog>

namespace qw
{

/// The progress sheet's window. Escape and its close button ask; who owns it takes it away.
class ProgressPanel : public QDialog
{
    Q_OBJECT

public:
    explicit ProgressPanel(QWidget *parent = nullptr);
    ~ProgressPanel() override;

    void reject() override;

Q_SIGNALS:
    void closeRequested();
};

} // namespace qw
