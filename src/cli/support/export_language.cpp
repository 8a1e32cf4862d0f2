#include "cli/support/export_language.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void requireOneLanguage(const Invocation& invocation) {
    if (invocation.has(kSwiftOption.name) && invocation.value(kLanguageOption.name) == u"objc") {
        throw UsageError{u"--swift cannot be combined with --lang objc"_s};
    }
}

bool takeLanguage(const Invocation& invocation, PCProject& project, ExportOptions& options) {
    if (invocation.has(kSwiftOption.name)) {
        options.swiftDialect = swiftDialectNamed(invocation.value(kSwiftOption.name));
        return true;
    }
    if (invocation.has(kLanguageOption.name)) {
        return invocation.value(kLanguageOption.name) == u"swift";
    }
    return project.preferences().generatedCodeUsesSwift();
}

}  // namespace tweenery
