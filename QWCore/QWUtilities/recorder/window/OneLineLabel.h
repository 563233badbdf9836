#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QLabel>

namespace qw
{

/// A text of one line, plain whatever it holds, with "…" in its middle where it does not fit. Its room does not depend
/// on the text.
class OneLineLabel : public QLabel
{
    Q_OBJECT

public:
    explicit OneLineLabel(QWidget *parent = nullptr);
    ~OneLineLabel() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qw
