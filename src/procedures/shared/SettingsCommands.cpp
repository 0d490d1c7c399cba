#include "procedures/shared/SettingsCommands.h"

#include <vector>

#include "device/FieldValidation.h"
#include "device/UpdateControl.h"
#include "device/WindowContext.h"
#include "domain/ControlView.h"
#include "domain/Prompts.h"
#include "domain/SettingsFile.h"

namespace rk31 {

namespace {

// What a good load checks again, in this order. The point windows' rules correct silently
// except the invalid-angle and invalid-level messages of the one-part windows.
void revalidate(WindowContext& ctx) {
    if (ctx.family == WindowFamily::OnePartPoint) {
        for (const Field field : {Field::ClampLow, Field::ClampHigh, Field::DP}) {
            ValidateField(ctx, field, -1);
        }
        for (const Field field : {Field::Angle, Field::Level}) {
            for (int box = 0; box < 2; ++box) {
                ValidateField(ctx, field, box);
            }
        }
        return;
    }
    const bool twoPart = ctx.isTwoPart();
    std::vector<Field> perPart = {Field::ClampLow, Field::ClampHigh, Field::DP};
    if (twoPart) {
        perPart.push_back(Field::VDD);
    }
    for (const Field field : perPart) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, field, part);
        }
    }
    const int pointBoxes = twoPart ? 8 : 4;
    for (const Field field : {Field::Angle, Field::Level}) {
        for (int box = 0; box < pointBoxes; ++box) {
            ValidateField(ctx, field, box);
        }
    }
    if (twoPart) {
        for (int part = 0; part < 2; ++part) {
            ValidateField(ctx, Field::Slope, part);
        }
    }
}

}  // namespace

QString SaveSettingsCommand(WindowContext& ctx) {
    if (!SaveSettingsFile(SettingsLinesOf(ctx.view, ctx.family), ctx.lastFileName, ctx.prompts)) {
        return {};
    }
    return SettingsFilePath(ctx.lastFileName);
}

QString LoadSettingsCommand(WindowContext& ctx) {
    const QString chosen = ctx.prompts.openFileName(SelectFileTitle, ctx.lastFileName);
    if (chosen.isEmpty()) {
        return {};
    }
    ctx.lastFileName = chosen;
    return LoadSettingsFrom(ctx, chosen);
}

QString LoadSettingsFrom(WindowContext& ctx, const QString& path) {
    const auto lines = ReadSettingsFile(path, ctx.prompts);
    if (!lines) {
        return {};
    }
    const SettingsReadResult result =
        ApplySettingsLines(*lines, ctx.family, ctx.view, [&ctx](const SettingsLine& line) {
            if (line.control == SettingsControl::OutMode) {
                OutModeSelected(ctx, static_cast<std::int16_t>(line.part));
            }
        });
    if (result.error != 0) {
        ctx.prompts.message(LoadErrorMessage(result.error));
        return {};
    }
    revalidate(ctx);
    return path;
}

}  // namespace rk31
