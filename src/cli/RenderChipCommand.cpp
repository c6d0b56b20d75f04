#include "cli/RenderChipCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "cli/TerminalText.h"
#include "countdown/SinglePassEngine.h"
#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "platform/tray/ChipRenderer.h"
#include "platform/tray/StatusItemController.h"
#include "platform/tray/TrayIconRenderer.h"
#include "storage/SettingsStore.h"

#include <QGuiApplication>

#include <memory>

namespace {

// Fonts and painting need a QGuiApplication; a command line run without one gets an offscreen one.
std::unique_ptr<QGuiApplication> ensureGuiApplication()
{
    if (QCoreApplication::instance()) {
        return nullptr;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    static int argc = 1;
    static char name[] = "tarrow";
    static char *argv[] = {name, nullptr};
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

QString RenderChipCommand::usage() const
{
    return QStringLiteral("render-chip --out FILE.png [--style full|compact|titleOnly|iconOnly] "
                          "[--now ISO8601] [--scale RATIO] [--square SIDE]");
}

int RenderChipCommand::run(const QStringList &arguments, CliContext &context)
{
    const QString out = QStringLiteral("out");
    const QString style = QStringLiteral("style");
    const QString nowOption = QStringLiteral("now");
    const QString scale = QStringLiteral("scale");
    const QString square = QStringLiteral("square");
    CommandArguments args({QCommandLineOption(out, QString(), QStringLiteral("FILE")),
                           QCommandLineOption(style, QString(), QStringLiteral("STYLE")),
                           QCommandLineOption(nowOption, QString(), QStringLiteral("ISO8601")),
                           QCommandLineOption(scale, QString(), QStringLiteral("RATIO")),
                           QCommandLineOption(square, QString(), QStringLiteral("SIDE"))});
    if (!args.parse(arguments, context, 0, 0, usage())) {
        return 1;
    }
    if (!args.isSet(out)) {
        return context.fail(QStringLiteral("render-chip needs --out FILE.png"));
    }
    std::optional<MenubarStyle> chosenStyle;
    if (args.isSet(style)) {
        chosenStyle = menubarStyleFromRaw(args.value(style));
        if (!chosenStyle) {
            return context.fail(QStringLiteral("unknown style \"%1\"").arg(args.value(style)));
        }
    }
    bool ok = true;
    const double ratio = args.isSet(scale) ? args.value(scale).toDouble(&ok) : 1.0;
    if (!ok || ratio < 0.5 || ratio > 4.0) {
        return context.fail(QStringLiteral("--scale needs a ratio from 0.5 to 4"));
    }
    const int side = args.isSet(square) ? args.value(square).toInt(&ok) : 0;
    if (!ok || (args.isSet(square) && side < 1) || side > 512) {
        return context.fail(QStringLiteral("--square needs a side from 1 to 512 pixels"));
    }
    QDateTime now = context.clock().now();
    if (args.isSet(nowOption)) {
        const std::optional<QDateTime> given = instantArgument(args.value(nowOption), context);
        if (!given) {
            return 1;
        }
        now = *given;
    }

    const std::unique_ptr<QGuiApplication> application = ensureGuiApplication();
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        return context.fail(QStringLiteral("render-chip needs a graphical application object"));
    }

    EventStore &store = context.data().events();
    const Settings &settings = context.data().settings().settings();
    const SinglePassEngine pass(store, now);
    MenubarChipInputs inputs = StatusItemController::inputsFrom(pass.engine(), settings);
    if (chosenStyle) {
        inputs.style = *chosenStyle;
    }
    const LanguageTable table = LanguageTable::load(
        resolveLanguage(settings.language, LocaleManager::systemPreferredLanguages()));
    const MenubarChipPresentation chip = MenubarChipPresentation::build(inputs, table);
    const QImage image =
        side > 0 ? TrayIconRenderer::render(chip, side) : ChipRenderer::render(chip, ratio);
    if (!image.save(args.value(out), "PNG")) {
        return context.fail(QStringLiteral("could not write %1").arg(args.value(out)));
    }
    context.out() << terminalSafe(chip.accessibleLabel()) << '\n';
    return 0;
}
