#pragma once

#include <QLabel>

namespace demo
{

/// One line of text that gives way: where there is no room for it, it ends in "…", and its tool tip tells all of it.
class ElidedText : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedText(QWidget *parent = nullptr);

    /// A file name may be longer than any window.
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

    QString shownText() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
};

} // namespace demo
