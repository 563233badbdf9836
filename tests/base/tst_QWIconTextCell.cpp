#include "fakes/QWTestMain.h"

#include <QWBase/tables/QWIconTextCell.h>

#include <QPainter>
#include <QStandardItemModel>
#include <QTreeView>

namespace
{
/// Tells what the cell would draw.
class OpenCell : public QWIconTextCell
{
public:
    QStyleOptionViewItem optionOf(const QModelIndex &index, const QTreeView &view) const
    {
        QStyleOptionViewItem option;
        option.initFrom(&view);
        option.rect = QRect(0, 0, 120, 24);
        option.decorationSize = QSize(16, 16);
        option.widget = &view;
        initStyleOption(&option, index);
        return option;
    }
};

QIcon redImage()
{
    QPixmap image(16, 16);
    image.fill(Qt::red);
    return image;
}
} // namespace

class tst_QWIconTextCell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void drawsTheImageBeforeTheText();
    void cellWithAnImageOfItsOwnKeepsIt();
    void withoutImageThereIsNoRoomForOne();
    void longTextsEndInDots();
    void lineBreaksAreSpaces();
    void markupIsText();
    void drawsInItsFont();

private:
    QStyleOptionViewItem _option(const QString &text)
    {
        m_model.item(0)->setText(text);
        return m_cell.optionOf(m_model.index(0, 0), m_view);
    }

    QStandardItemModel m_model{1, 1};
    QTreeView m_view;
    OpenCell m_cell;
};

void tst_QWIconTextCell::init()
{
    m_model.setItem(0, new QStandardItem("Studio"));
    m_view.setModel(&m_model);
    m_cell.setImage({});
}

void tst_QWIconTextCell::drawsTheImageBeforeTheText()
{
    m_cell.setImage(redImage());
    const QStyleOptionViewItem option = _option("Studio");
    QImage drawn(120, 24, QImage::Format_RGB32);
    drawn.fill(Qt::white);
    QPainter painter(&drawn);
    m_cell.paint(&painter, option, m_model.index(0, 0));
    painter.end();
    const QRect image = m_view.style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, &m_view);
    const QRect text = m_view.style()->subElementRect(QStyle::SE_ItemViewItemText, &option, &m_view);
    QCOMPARE(drawn.pixelColor(image.center()), QColor(Qt::red));
    QVERIFY(image.right() <= text.left());
}

void tst_QWIconTextCell::cellWithAnImageOfItsOwnKeepsIt()
{
    QPixmap own(16, 16);
    own.fill(Qt::blue);
    m_model.item(0)->setIcon(own);
    m_cell.setImage(redImage());
    QCOMPARE(_option("Studio").icon.pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::blue));
}

void tst_QWIconTextCell::withoutImageThereIsNoRoomForOne()
{
    QVERIFY(!(_option("DEVICES").features & QStyleOptionViewItem::HasDecoration));
    QVERIFY(m_cell.image().isNull());
}

void tst_QWIconTextCell::longTextsEndInDots()
{
    QCOMPARE(_option(QString(1000, 'm')).textElideMode, Qt::ElideRight);
}

void tst_QWIconTextCell::lineBreaksAreSpaces()
{
    QCOMPARE(_option("Studio\nB").text, "Studio B");
}

void tst_QWIconTextCell::markupIsText()
{
    QCOMPARE(_option("<b>Studio</b>").text, "<b>Studio</b>");
}

void tst_QWIconTextCell::drawsInItsFont()
{
    QFont font = m_view.font();
    font.setPointSize(23);
    OpenCell cell;
    QCOMPARE(cell.optionOf(m_model.index(0, 0), m_view).font.pointSize(), m_view.font().pointSize());
    cell.setFont(font);
    const QStyleOptionViewItem option = cell.optionOf(m_model.index(0, 0), m_view);
    QCOMPARE(option.font.pointSize(), 23);
    QCOMPARE(option.fontMetrics, QFontMetrics(font));
}

QW_TEST_MAIN(tst_QWIconTextCell)
#include "tst_QWIconTextCell.moc"
