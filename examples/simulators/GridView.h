#pragma once

#include <QSet>
#include <QWidget>

#include <functional>
#include <optional>

/// The buttons of a grid with their LEDs: pressed with the mouse (the right button holds them down until the next
/// click) or with arrow keys and space.
class GridView : public QWidget
{
    Q_OBJECT

public:
    explicit GridView(QWidget *parent = nullptr);

    void setDimensions(int columns, int rows);

    /// Asked for each LED when the view paints; update() after changes.
    void setLEDs(std::function<bool(int column, int row)> isLit) { m_isLit = std::move(isLit); }

    /// 0 to 15.
    void setLevel(int level);

    /// Shows a button as pressed or not, whoever pressed it.
    void setPressed(int column, int row, bool isPressed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Where a button is, for clicks.
    QRectF buttonRect(int column, int row) const;

Q_SIGNALS:
    void pressed(int column, int row);
    void released(int column, int row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    using Button = std::pair<int, int>; ///< Column, row.

    qreal _pitch() const;
    QPointF _origin() const;
    std::optional<Button> _buttonAt(QPointF point) const;
    void _paintButton(QPainter &painter, Button button) const;
    QColor _dark() const;
    QColor _lit() const;
    void _press(Button button);
    void _release(Button button);
    void _moveFocus(int columns, int rows);

    int m_columns = 8;
    int m_rows = 8;
    int m_level = 15;
    std::function<bool(int, int)> m_isLit;
    QSet<Button> m_pressed;
    std::optional<Button> m_mouse; ///< Held with the mouse.
    std::optional<Button> m_key;   ///< Held with space.
    Button m_focus{0, 0};
};
