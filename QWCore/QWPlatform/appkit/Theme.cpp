#include "Theme.h"

#include "QWPlatform/appkit/menus/MenuStyle.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include <array>

namespace platform
{

namespace
{
struct RoleColors
{
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array roleColors{
    RoleColors{QPalette::Window, 0xfff6f6f7, 0xff242528},
    RoleColors{QPalette::WindowText, 0xff1d1d20, 0xffe8e8ea},
    RoleColors{QPalette::Base, 0xffffffff, 0xff1b1c1e},
    RoleColors{QPalette::AlternateBase, 0xfff5f5f7, 0xff222326},
    RoleColors{QPalette::Text, 0xff1d1d20, 0xffe8e8ea},
    RoleColors{QPalette::PlaceholderText, 0xff6b6b72, 0xff9a9aa2},
    RoleColors{QPalette::Button, 0xfff0f0f2, 0xff34363a},
    RoleColors{QPalette::ButtonText, 0xff1d1d20, 0xffe8e8ea},
    RoleColors{QPalette::BrightText, 0xffffffff, 0xffffffff},
    RoleColors{QPalette::ToolTipBase, 0xff2f3034, 0xff3c3e43},
    RoleColors{QPalette::ToolTipText, 0xfff6f6f7, 0xffe8e8ea},
    RoleColors{QPalette::Highlight, 0xff3478c6, 0xff5b9be6},
    RoleColors{QPalette::HighlightedText, 0xffffffff, 0xff101215},
    RoleColors{QPalette::Link, 0xff3478c6, 0xff5b9be6},
    RoleColors{QPalette::LinkVisited, 0xff6a56b5, 0xffa491e6},
    RoleColors{QPalette::Light, 0xffffffff, 0xff46484d},
    RoleColors{QPalette::Midlight, 0xfff0f0f2, 0xff3a3c40},
    RoleColors{QPalette::Mid, 0xffc4c4c9, 0xff1f2022},
    RoleColors{QPalette::Dark, 0xffa9a9af, 0xff17181a},
    RoleColors{QPalette::Shadow, 0xff6e6e75, 0xff0c0d0e},
};

constexpr std::array disabledColors{
    RoleColors{QPalette::WindowText, 0xff9b9ba2, 0xff74757b},
    RoleColors{QPalette::Text, 0xff9b9ba2, 0xff74757b},
    RoleColors{QPalette::ButtonText, 0xff9b9ba2, 0xff74757b},
    RoleColors{QPalette::PlaceholderText, 0xffb4b4ba, 0xff5c5d62},
    RoleColors{QPalette::Highlight, 0xffc4c4c9, 0xff46484d},
    RoleColors{QPalette::HighlightedText, 0xff6b6b72, 0xff9a9aa2},
};

/// What has to stand out from dark windows and lists.
constexpr std::array raisedClasses{"QMenu", "QCheckBox", "QRadioButton"};

/// Theirs in the dark look: the ground is lighter, and so is the edge, which the style makes of the window's colour.
constexpr std::array raisedDarkColors{std::pair{QPalette::Base, 0xff2b2c30U}, std::pair{QPalette::Window, 0xff6a6c72U}};

/// Without a desktop nothing chooses a font that is sure to be there.
void chooseBareFont(QApplication &application)
{
    QFont font("DejaVu Sans");
    font.setPointSize(10);
    application.setFont(font);
}

QPalette raisedPalette(ThemeChoice choice)
{
    QPalette palette = themePalette(choice);
    if (choice == ThemeChoice::Dark)
        for (const auto &[role, color] : raisedDarkColors)
            palette.setColor(role, QColor(color));
    return palette;
}

void setRaisedPalette(const QPalette &palette)
{
    for (const char *name : raisedClasses)
        QApplication::setPalette(palette, name);
}

/// What the desktop gave, kept from before the first change.
struct DesktopLook
{
    QString style;
    QFont font;
};

const DesktopLook &desktopLook()
{
    static const DesktopLook look{QApplication::style()->objectName(), QApplication::font()};
    return look;
}

void followDesktop(QApplication &application)
{
    application.setStyle(new MenuStyle(QStyleFactory::create(desktopLook().style)));
    application.setPalette(QPalette());
    setRaisedPalette(QPalette());
    application.setFont(desktopLook().font);
}

void useOwnLook(QApplication &application, ThemeChoice choice)
{
    application.setStyle(new MenuStyle(QStyleFactory::create("Fusion")));
    application.setPalette(themePalette(choice));
    setRaisedPalette(raisedPalette(choice));
    if (isBareDisplay())
        chooseBareFont(application);
}
} // namespace

QPalette themePalette(ThemeChoice choice)
{
    const bool dark = choice == ThemeChoice::Dark;
    QPalette palette;
    for (const RoleColors &entry : roleColors)
        palette.setColor(entry.role, QColor(dark ? entry.dark : entry.light));
    for (const RoleColors &entry : disabledColors)
        palette.setColor(QPalette::Disabled, entry.role, QColor(dark ? entry.dark : entry.light));
    return palette;
}

bool isBareDisplay()
{
    if (QGuiApplication::platformName() == "offscreen" || QGuiApplication::platformName() == "minimal")
        return true;
    constexpr std::array desktopVariables{"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "QT_QPA_PLATFORMTHEME",
                                          "QT_STYLE_OVERRIDE"};
    return std::all_of(desktopVariables.begin(), desktopVariables.end(),
                       [](const char *name) { return qEnvironmentVariableIsEmpty(name); });
}

void applyTheme(QApplication &application, ThemeChoice choice)
{
    desktopLook();
    if (choice == ThemeChoice::System && !isBareDisplay())
        followDesktop(application);
    else
        useOwnLook(application, choice);
}

} // namespace platform
