#include "codegen/language/current_swift_code_provider.h"

#include "base/number_text.h"

namespace tweenery {

namespace {

constexpr std::string_view kCompletionType = "(@MainActor (Bool) -> Void)?";

constexpr std::string_view kCompletionDocumentation =
    "\n\t/// - Parameter completion: is called at the end, with false when the animation is "
    "removed "
    "before.";

// "kCAMediaTimingFunctionEaseIn" is ".easeIn" here.
std::string timingFunctionCase(std::string_view constant) {
    constexpr std::string_view prefix = "kCAMediaTimingFunction";
    std::string name(constant.substr(constant.starts_with(prefix) ? prefix.size() : 0));
    if (!name.empty() && name[0] >= 'A' && name[0] <= 'Z') {
        name[0] = static_cast<char>(name[0] - 'A' + 'a');
    }
    return name;
}

}  // namespace

void CurrentSwiftCodeProvider::describeStandardAnimation(float seconds, bool repeats) {
    m_playing.clear();
    append(m_playing, "which %@ %0.3f seconds",
           repeats ? "repeats until it is removed, its longest part in" : "plays once and takes",
           seconds);
}

// One of the methods that only call the main one.
void CurrentSwiftCodeProvider::addConvenienceMethod(Text baseName, Text parameters,
                                                    Text documentation, Text arguments) {
    code() += documentation;
    append(code(),
           "\n\tfunc add%@(%@) {"
           "\n\t\tself.add%@WithBeginTime(0, %@)"
           "\n\t}",
           baseName, parameters, baseName, arguments);
}

void CurrentSwiftCodeProvider::beginStandardAnimationWithBaseName(Text baseName, Text userName,
                                                                  bool addCompletionBlock,
                                                                  bool usesAnimationSuffix) {
    addCodeMarkWithName(userName);

    const std::string name = comment(userName);
    std::string adds;
    append(adds, "\n\n\t/// Adds the animation \"%@\", %@", name, m_playing);
    const std::string holds = adds + ", and holds its end.";
    const std::string mayHold =
        adds +
        ".\n\t/// - Parameter removedOnCompletion: whether it goes at its end, which otherwise "
        "is held.";
    const std::string suffix = usesAnimationSuffix ? ", animationKeySuffix: \"\"" : "";
    const std::string hold = "fillMode: .both, removedOnCompletion: false" + suffix;
    const std::string maybeHold =
        "fillMode: removedOnCompletion ? .removed : .both, "
        "removedOnCompletion: removedOnCompletion" +
        suffix;
    if (addCompletionBlock) {
        const std::string completion = "completion: " + std::string(kCompletionType);
        const std::string documentation(kCompletionDocumentation);
        addConvenienceMethod(baseName, "", holds, hold + ", completion: nil");
        addConvenienceMethod(baseName, completion, holds + documentation,
                             hold + ", completion: completion");
        addConvenienceMethod(baseName, "removedOnCompletion: Bool", mayHold,
                             maybeHold + ", completion: nil");
        addConvenienceMethod(baseName, "removedOnCompletion: Bool, " + completion,
                             mayHold + documentation, maybeHold + ", completion: completion");
    } else {
        addConvenienceMethod(baseName, "", holds, hold);
        addConvenienceMethod(baseName, "removedOnCompletion: Bool", mayHold, maybeHold);
    }
    code() += adds + ", from `beginTime` in the time of its layers.";
    if (addCompletionBlock) { code() += kCompletionDocumentation; }
    append(code(),
           "\n\tfunc add%@WithBeginTime(_ beginTime: CFTimeInterval, "
           "fillMode: CAMediaTimingFillMode, removedOnCompletion: Bool%@%@%@) {",
           baseName, usesAnimationSuffix ? ", animationKeySuffix: String" : "",
           addCompletionBlock ? ", completion: " : "", addCompletionBlock ? kCompletionType : "");
    m_playing = name;
}

void CurrentSwiftCodeProvider::addTimingFunctionDefinitionWithBuiltInFunctionName(
    Text variableName, Text functionName) {
    append(code(), "\n\t\tlet %@ = CAMediaTimingFunction(name: .%@)", variableName,
           timingFunctionCase(functionName));
}

void CurrentSwiftCodeProvider::addTimingFunctionDefinitionWithControlPoints(Text variableName,
                                                                            QPointF controlPoint1,
                                                                            QPointF controlPoint2) {
    append(
        code(), "\n\t\tlet %@ = CAMediaTimingFunction(controlPoints: %0.2f, %0.2f, %0.2f, %0.2f)",
        variableName, controlPoint1.x(), controlPoint1.y(), controlPoint2.x(), controlPoint2.y());
}

void CurrentSwiftCodeProvider::addStandardAnimationWithBaseName(Text baseName, std::string addCode,
                                                                Text removeCode, bool) {
    addPiece(std::move(addCode));
    append(code(),
           "\n\t}"
           "\n\n\t/// Removes the animation \"%@\"."
           "\n\tfunc remove%@() {",
           m_playing, baseName);
    code() += removeCode;
    append(code(), "\n\t}");
}

// The frameworks do not say on which actor they call it; they do on the main thread.
void CurrentSwiftCodeProvider::addAnimationDidStopMethod() {
    append(code(),
           "\n\n\tnonisolated func animationDidStop(_ anim: CAAnimation, finished flag: Bool) {"
           "\n\t\tlet stopped = ObjectIdentifier(anim)"
           "\n\t\tMainActor.assumeIsolated {"
           "\n\t\t\tif let completion = self.animationCompletions.removeValue(forKey: stopped) {"
           "\n\t\t\t\tcompletion(flag)"
           "\n\t\t\t}"
           "\n\t\t}"
           "\n\t}");
}

void CurrentSwiftCodeProvider::addRemoveAllAnimationsMethodWithBaseMethodNames(
    const std::vector<std::string>& baseMethodNames) {
    append(code(),
           "\n\n\t/// Removes all animations from all parts of the scene."
           "\n\tfunc removeAllAnimations() {");
    code() += generateForMac() ? "\n\t\tfor layer in self.layersByName.values {"
                                 "\n\t\t\tlayer.removeAllAnimations()"
                               : "\n\t\tfor view in self.viewsByName.values {"
                                 "\n\t\t\tview.layer.removeAllAnimations()";
    append(code(), "\n\t\t}");
    for (const std::string& baseName : baseMethodNames) {
        codeForRemovingRepresentativeAnimationWithBaseName(code(), baseName);
    }
    append(code(), "\n\t}");
}

// Pieces of animation code

void CurrentSwiftCodeProvider::codeForFloatWithName(std::string& out, Text name,
                                                    float value) const {
    append(out, "\n\t\tlet %@: CFTimeInterval = %0.3f", name, value);
}

// The type of every list is stated. A long one becomes a function for each part: the time that a
// compiler takes for one of them grows faster than its length.
void CurrentSwiftCodeProvider::appendList(std::string& out, Text variableName, Text property,
                                          Text elementType, Text list,
                                          std::span<const size_t> cuts) {
    if (cuts.empty()) {
        append(out, "\n\t\t%@.%@ = [%@] as [%@]", variableName, property, list, elementType);
        return;
    }
    std::string name;
    append(name, "%@_%@", variableName, property);
    append(out, "\n\t\tvar %@: [%@] = []", name, elementType);
    constexpr size_t comma = std::string_view(", ").size();
    size_t begin = 0;
    for (size_t part = 0; part <= cuts.size(); ++part) {
        const size_t end = part < cuts.size() ? cuts[part] - comma : list.size();
        const auto number = static_cast<int32_t>(part + 1);
        append(out,
               "\n\t\tfunc %@%d() -> [%@] { return [%@] }"
               "\n\t\t%@ += %@%d()",
               name, number, elementType, list.substr(begin, end - begin), name, name, number);
        begin = end + comma;
    }
    append(out, "\n\t\t%@.%@ = %@", variableName, property, name);
}

void CurrentSwiftCodeProvider::codeForAnimationWithVariableName(
    std::string& out, const KeyframeAnimationCode& animation) const {
    const Text variable = animation.variableName;
    append(out,
           "\n\n\t\tlet %@ = CAKeyframeAnimation(keyPath: \"%@\")"
           "\n\t\t%@.duration = %@",
           variable, animation.keypath, variable, animation.duration);
    appendList(out, variable, "values", animation.keypath == "contents" ? "Any" : "Float",
               animation.values, animation.valueCuts);
    appendList(out, variable, "keyTimes", "NSNumber", animation.times, animation.timeCuts);
    appendList(out, variable, "timingFunctions", "CAMediaTimingFunction", animation.timingFunctions,
               animation.timingFunctionCuts);
    if (animation.autoreverses) {
        append(out, "\n\t\t%@.autoreverses = %@", variable,
               *animation.autoreverses ? "true" : "false");
    }
    if (animation.repeatForever) { append(out, "\n\t\t%@.repeatCount = .infinity", variable); }
    append(out,
           "\n\t\t%@.beginTime = beginTime"
           "\n\t\t%@.fillMode = fillMode"
           "\n\t\t%@.isRemovedOnCompletion = removedOnCompletion",
           variable, variable, variable);
    append(out, "\n\t\tself.%@[\"%@\"]?.%@add(%@, forKey: \"%@\"%@%@)",
           generateForMac() ? "layersByName" : "viewsByName", literal(animation.elementUserName),
           generateForMac() ? "" : "layer.", variable, literal(animation.animationKey),
           animation.animationKeySuffix ? " + " : "", animation.animationKeySuffix.value_or(""));
}

void CurrentSwiftCodeProvider::codeForRemovingAnimationWithKey(std::string& out, Text key,
                                                               Text elementName,
                                                               bool isLayer) const {
    append(out, "\n\t\tself.%@[\"%@\"]?.%@removeAnimation(forKey: \"%@\")",
           isLayer ? "layersByName" : "viewsByName", literal(elementName), isLayer ? "" : "layer.",
           literal(key));
}

void CurrentSwiftCodeProvider::codeForAddingRepresentativeAnimationWithBaseName(
    std::string& out, Text baseName, float duration) const {
    append(out,
           "\n\t\tif let completion {"
           "\n\t\t\tlet representativeAnimation = CABasicAnimation(keyPath: \"not.a.real.key\")"
           "\n\t\t\trepresentativeAnimation.duration = %0.3f"
           "\n\t\t\trepresentativeAnimation.delegate = self",
           duration);
    append(out,
           "\n\t\t\t%@.add(representativeAnimation, forKey: \"%@\")"
           "\n\t\t\tif let added = %@.animation(forKey: \"%@\") {"
           "\n\t\t\t\tself.animationCompletions[ObjectIdentifier(added)] = completion"
           "\n\t\t\t}"
           "\n\t\t}",
           ownLayer(), baseName, ownLayer(), baseName);
}

void CurrentSwiftCodeProvider::codeForRemovingRepresentativeAnimationWithBaseName(
    std::string& out, Text baseName) const {
    append(out, "\n\t\t%@.removeAnimation(forKey: \"%@\")", ownLayer(), baseName);
}

void CurrentSwiftCodeProvider::codeForPropertySetterString(std::string& out, Text text) const {
    append(out, "\n\t\t%@", text);
}

void CurrentSwiftCodeProvider::codeForBoxedNumber(std::string& out, float value) const {
    appendThreeDecimals(out, value);
}

void CurrentSwiftCodeProvider::codeForImageRefWithName(std::string& out, Text imageFileName) const {
    m_usesImages = true;
    append(out, "self.contents(ofImageNamed: \"%@\")", literal(imageFileName));
}

void CurrentSwiftCodeProvider::codeForNamedImage(std::string& out, Text imageFileName) const {
    m_usesImages = true;
    append(out, "self.image(named: \"%@\")", literal(imageFileName));
}

void CurrentSwiftCodeProvider::codeForPropertySetterWithArrayString(std::string& out, Text name,
                                                                    Text arrayText) const {
    append(out, "\n\t\t%@ = [%@]", name, arrayText);
}

}  // namespace tweenery
