#pragma once

class QWApplication;

namespace qw
{

/// Shows the splash screen around the launch of an application that uses one.
class SplashScreenExtension
{
public:
    SplashScreenExtension() = delete;

    static void willFinishLaunching(QWApplication &application);
    static void didFinishLaunching(QWApplication &application);
};

} // namespace qw
