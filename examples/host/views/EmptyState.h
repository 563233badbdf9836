#pragma once

#include <QWidget>

class QPushButton;

namespace demo
{

/// What the window shows while there is no sound: what to do, and the two buttons that do it.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyState(QWidget *parent = nullptr);

    QPushButton *openButton() const { return m_open; }
    QPushButton *toneButton() const { return m_tone; }

    /// A file is being dragged over the window.
    void setWelcoming(bool welcoming);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPushButton *m_open;
    QPushButton *m_tone;
    bool m_welcoming = false;
};

} // namespace demo
