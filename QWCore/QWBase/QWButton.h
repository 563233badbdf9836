#pragma once

#include <QWBase/qwbase_export.h>

#include <QPushButton>

/// A push button with the company's own bezels.
class QWBASE_EXPORT QWButton : public QPushButton
{
    Q_OBJECT

public:
    /// Looks; any other number is the desktop's own push button.
    enum BezelStyle
    {
        Standard = 1,
        QuietDark = 1200 ///< Rounded, translucent, light text: for dark panels that draw their own background.
    };

    explicit QWButton(QWidget *parent = nullptr);
    explicit QWButton(const QString &title, QWidget *parent = nullptr);

    int bezelStyle() const { return m_bezelStyle; }
    void setBezelStyle(int style);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize _quietSize() const;
    void _paintQuiet();

    int m_bezelStyle = Standard;
};
