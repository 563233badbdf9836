#pragma once

#include <QLabel>

namespace qw
{

/// One line of plain text that is shortened with an ellipsis where room is short; the middle goes, so that both ends
/// stay legible. Assistive technology reads it whole.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);
    ~ElidedLabel() override;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace qw
