#include "WebViewPrinting.h"

#include <QLocale>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>

#include <algorithm>

namespace platform
{

namespace
{
constexpr QLocale::Territory letterTerritories[] = {
    QLocale::UnitedStates, QLocale::Canada,     QLocale::Mexico,      QLocale::Colombia,          QLocale::Venezuela,
    QLocale::Chile,        QLocale::CostaRica,  QLocale::ElSalvador,  QLocale::Guatemala,         QLocale::Nicaragua,
    QLocale::Panama,       QLocale::PuertoRico, QLocale::Philippines, QLocale::DominicanRepublic,
};
constexpr QMarginsF marginsInMillimeters{18, 16, 18, 16};
} // namespace

QPageLayout webPageLayout(const QLocale &locale)
{
    const bool letter = std::ranges::find(letterTerritories, locale.territory()) != std::end(letterTerritories);
    const QPageSize size(letter ? QPageSize::Letter : QPageSize::A4);
    return {size, QPageLayout::Portrait, marginsInMillimeters, QPageLayout::Millimeter};
}

void askForPrinter(QWidget &view, std::function<void(std::shared_ptr<QPrinter> printer)> print)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    auto *dialog = new QPrintDialog(printer.get(), view.window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, &view, [print = std::move(print), printer] { print(printer); });
    QObject::connect(dialog, &QObject::destroyed, dialog, [printer] {}); // the dialog uses it to its end
    dialog->open();
}

} // namespace platform
