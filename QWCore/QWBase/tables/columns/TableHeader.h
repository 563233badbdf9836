#pragma once

#include <QHeaderView>

namespace qw
{

/// The header of a table for mouse and keyboard: with the focus, Left and Right choose a column, Space and Return click
/// it, Control with Left and Right moves it, Down leads into the table, the menu key opens a menu.
class TableHeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit TableHeader(QWidget *parent = nullptr);
    ~TableHeader() override;

    /// The column that keys act on: -1 for none.
    int focusSection() const;
    void setFocusSection(int section);

    /// Moves a column by one place among those that show, -1 to the front; nothing where there is none.
    void moveBy(int section, int places);
    bool canMoveBy(int section, int places) const;

Q_SIGNALS:
    void menuRequested(int section, const QPoint &position); ///< On the screen.

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void initStyleOptionForIndex(QStyleOptionHeader *option, int section) const override;
    QSize sectionSizeFromContents(int section) const override;

private:
    int _neighbour(int section, int places) const;
    int _firstShown() const;
    int _placesTowards(int key) const;
    bool _take(const QKeyEvent &event);
    void _paintTitle(QPainter &painter, const QRect &rect, int section) const;
    QFont _titleFont(int section) const;
    void _paintFocus(QPainter &painter, const QRect &rect) const;
    void _tellFocus();

    int m_focusSection = -1;
    mutable bool m_paintsGround = false; ///< While a section is painted without its title.
};

} // namespace qw
