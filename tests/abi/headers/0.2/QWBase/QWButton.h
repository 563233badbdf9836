#pragma once

#include <QWBase/qwbase_export.h>

#include <QPushButton>

#include <memory>

/// A push button with the company's own bezels. Main thread.
class QWBASE_EXPORT QWButton : public QPushButton
{
    Q_OBJECT

public:
    /// Looks; any other number is the desktop's own push button.
    enum BezelStyle
    {
        Standard = 1,    ///< The desktop's own.
        QuietDark = 1200 ///< Rounded, translucent, light text: for dark panels that draw their own background.
    };

    /// A button without title, of the Standard style.
    explicit QWButton(QWidget *parent = nullptr);

    /// A button of the Standard style; "&" before a character of @p title makes that its mnemonic.
    explicit QWButton(const QString &title, QWidget *parent = nullptr);

    ~QWButton() override;

    /// As set, one of BezelStyle or not.
    int bezelStyle() const;

    /// Sets bezelStyle(), which may change the size.
    void setBezelStyle(int style);

    QSize sizeHint() const override;        ///< That of the style.
    QSize minimumSizeHint() const override; ///< That of the style: a quiet button shows its whole title.

protected:
    void paintEvent(QPaintEvent *event) override; ///< Paints what bezelStyle() says.

private:
    class Private;
    std::unique_ptr<Private> d;
};
