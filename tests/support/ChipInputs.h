#pragma once

#include "countdown/CountdownEngine.h"
#include "countdown/MenubarChipPresentation.h"
#include "countdown/MenubarSubject.h"
#include "records/Settings.h"

// The chip's inputs as the status item takes them from the engine and the settings, for tests
// of the core that do not link the panel item.
inline MenubarChipInputs chipInputs(const CountdownEngine &engine, const Settings &settings)
{
    MenubarChipInputs inputs;
    if (engine.pinned())
        inputs.subject = MenubarSubject::of(*engine.pinned());
    inputs.state = engine.state();
    inputs.progress = engine.progress();
    inputs.style = settings.menubarStyle;
    inputs.titleLength = settings.menubarTitleLength;
    inputs.displayFormat = settings.displayFormat;
    return inputs;
}
