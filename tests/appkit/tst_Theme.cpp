#include <QWPlatform/appkit/Theme.h>

#include <QApplication>
#include <QCheckBox>
#include <QFont>
#include <QMenu>
#include <QPalette>
#include <QStyle>
#include <QTest>

using platform::ThemeChoice;

class tst_Theme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void palettesHaveTheirColors_data();
    void palettesHaveTheirColors();
    void textIsLegible_data();
    void textIsLegible();
    void bareDisplayGetsTheLightLook();
    void themesCanBeChanged();
    void darkMenusAndBoxesStandOut();
};

namespace
{
double luminance(const QColor &color)
{
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const auto [low, high] = std::minmax({luminance(a), luminance(b)}); // by value: references to these would dangle
    return (high + 0.05) / (low + 0.05);
}
} // namespace

void tst_Theme::palettesHaveTheirColors_data()
{
    QTest::addColumn<ThemeChoice>("theme");
    QTest::addColumn<QPalette::ColorRole>("role");
    QTest::addColumn<QString>("color");
    QTest::newRow("light window") << ThemeChoice::Light << QPalette::Window << "#f6f6f7";
    QTest::newRow("light base") << ThemeChoice::Light << QPalette::Base << "#ffffff";
    QTest::newRow("light text") << ThemeChoice::Light << QPalette::WindowText << "#1d1d20";
    QTest::newRow("light accent") << ThemeChoice::Light << QPalette::Highlight << "#3478c6";
    QTest::newRow("dark window") << ThemeChoice::Dark << QPalette::Window << "#242528";
    QTest::newRow("dark base") << ThemeChoice::Dark << QPalette::Base << "#1b1c1e";
    QTest::newRow("dark text") << ThemeChoice::Dark << QPalette::WindowText << "#e8e8ea";
    QTest::newRow("dark accent") << ThemeChoice::Dark << QPalette::Highlight << "#5b9be6";
}

void tst_Theme::palettesHaveTheirColors()
{
    QFETCH(ThemeChoice, theme);
    QFETCH(QPalette::ColorRole, role);
    QTEST(platform::themePalette(theme).color(QPalette::Active, role).name(), "color");
}

void tst_Theme::textIsLegible_data()
{
    QTest::addColumn<ThemeChoice>("theme");
    QTest::addColumn<QPalette::ColorRole>("text");
    QTest::addColumn<QPalette::ColorRole>("background");
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
        {QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},        {QPalette::ButtonText, QPalette::Button},
        {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::PlaceholderText, QPalette::Base},      {QPalette::Link, QPalette::Base}};
    for (const ThemeChoice theme : {ThemeChoice::Light, ThemeChoice::Dark}) {
        for (const auto &[text, background] : pairs)
            QTest::addRow("theme %d, role %d on %d", int(theme), text, background) << theme << text << background;
    }
}

void tst_Theme::textIsLegible()
{
    QFETCH(ThemeChoice, theme);
    QFETCH(QPalette::ColorRole, text);
    QFETCH(QPalette::ColorRole, background);
    const QPalette palette = platform::themePalette(theme);
    const double ratio = contrast(palette.color(text), palette.color(background));
    QVERIFY2(ratio >= 4.5, qPrintable(QString::number(ratio)));
}

void tst_Theme::bareDisplayGetsTheLightLook()
{
    QVERIFY(platform::isBareDisplay());
    platform::applyTheme(*qApp, ThemeChoice::System);
    QCOMPARE(QApplication::style()->objectName().toLower(), QString("fusion"));
    QCOMPARE(QApplication::palette().color(QPalette::Window).name(), QString("#f6f6f7"));
    QCOMPARE(QApplication::font().family(), QString("DejaVu Sans"));
}

void tst_Theme::themesCanBeChanged()
{
    QWidget widget;
    widget.show();
    platform::applyTheme(*qApp, ThemeChoice::Dark);
    QTRY_COMPARE(widget.palette().color(QPalette::Window).name(), QString("#242528"));
    platform::applyTheme(*qApp, ThemeChoice::Light);
    QTRY_COMPARE(widget.palette().color(QPalette::Window).name(), QString("#f6f6f7"));
}

void tst_Theme::darkMenusAndBoxesStandOut()
{
    const QWidget list;
    const QMenu menu;
    const QCheckBox box;
    const auto ground = [](const QWidget &widget) { return widget.palette().color(QPalette::Base); };
    platform::applyTheme(*qApp, ThemeChoice::Dark);
    QTRY_VERIFY(luminance(ground(menu)) > 1.5 * luminance(ground(list)));
    QCOMPARE(ground(box), ground(menu));
    QVERIFY(contrast(menu.palette().color(QPalette::WindowText), ground(menu)) >= 4.5);
    platform::applyTheme(*qApp, ThemeChoice::Light);
    QTRY_COMPARE(ground(menu).name(), QString("#ffffff"));
    QCOMPARE(ground(box), ground(menu));
}

QTEST_MAIN(tst_Theme)
#include "tst_Theme.moc"
