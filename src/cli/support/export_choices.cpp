#include "cli/support/export_choices.h"

namespace tweenery {

ExportOptions exportOptionsFrom(const Invocation& invocation, PCProject& project) {
    ExportOptions options = ExportOptions::fromPreferences(project);
    if (invocation.has(kPlatformOption.name)) {
        options.generateForMac = invocation.value(kPlatformOption.name) == u"mac";
    }
    if (invocation.knows(kExactOption.name) && invocation.has(kExactOption.name)) {
        options.digits = NumberDigits::AllNeeded;
    }
    return options;
}

bool usesSwift(const Invocation& invocation, PCProject& project) {
    if (!invocation.has(kLanguageOption.name)) {
        return project.preferences().generatedCodeUsesSwift();
    }
    return invocation.value(kLanguageOption.name) == u"swift";
}

}  // namespace tweenery
