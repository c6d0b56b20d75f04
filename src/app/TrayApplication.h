#pragma once

#include <QProcessEnvironment>
#include <QStringList>

// Starts the tray application (what `tarrow` without a subcommand does) and returns the exit code.
int runTrayApplication(int argc, char **argv);

// Whether the environment offers a display the tray application can open: an X11 or Wayland
// display, or a Qt platform plugin that needs none (offscreen, vnc, the framebuffer ones).
bool hasGraphicalSession(const QProcessEnvironment &environment);

// What was asked of the tray application on its command line.
struct TrayLaunchOptions
{
    QString dataDirectory; // --data-dir DIR; empty for the user's data folder
    bool autostart = false; // --autostart: started by the desktop session at login
    bool uiTest = false; // --ui-test: UI tests drive the popup themselves
    bool togglePopup = false; // --toggle-popup: show or hide the popup (a key bound by the user)
    bool newCountdown = false; // --new-countdown: start a new countdown
    bool resetOnboarding = false; // --reset-onboarding: show the welcome page again
    QStringList links; // tarrow:// links (or anything else to hand to the URL router)
    QStringList unknownOptions;

    // `arguments` without the program name, Qt's own options already removed.
    static TrayLaunchOptions parse(const QStringList &arguments);
    // The options above as `tarrow help` lists them, one "  --option  what it does" line each.
    static QString usage();
};
