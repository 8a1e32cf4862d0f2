// The methods of standard animations, and the pieces that they are made of.

#include <utility>

#include "base/number_text.h"
#include "codegen/language/objc_code_provider.h"

namespace tweenery {

void PCObjCCodeProvider::declareStandardAnimation(Text baseName, Text userName,
                                                  bool addCompletionBlock, Text mainMethodTail) {
    append(m_header, "\n\n// %@", comment(userName));
    append(m_header, "\n- (void)add%@;", baseName);
    if (addCompletionBlock) {
        append(m_header, "\n- (void)add%@WithCompletion:(void (^)(BOOL finished))completionBlock;",
               baseName);
    }
    append(m_header, "\n- (void)add%@AndRemoveOnCompletion:(BOOL)removedOnCompletion;", baseName);
    if (addCompletionBlock) {
        append(m_header,
               "\n- (void)add%@AndRemoveOnCompletion:(BOOL)removedOnCompletion "
               "completion:(void (^)(BOOL finished))completionBlock;",
               baseName);
    }
    append(m_header,
           "\n- (void)add%@WithBeginTime:(CFTimeInterval)beginTime andFillMode:(NSString "
           "*)fillMode andRemoveOnCompletion:(BOOL)removedOnCompletion%@;",
           baseName, mainMethodTail);
    append(m_header, "\n- (void)remove%@;", baseName);
}

void PCObjCCodeProvider::beginStandardAnimationWithBaseName(Text baseName, Text userName,
                                                            bool addCompletionBlock,
                                                            bool usesAnimationSuffix) {
    std::string mainMethodTail;
    if (usesAnimationSuffix) {
        mainMethodTail += " andAnimationKeySuffix:(NSString *)animationKeySuffix";
    }
    if (addCompletionBlock) {
        mainMethodTail += " completion:(void (^)(BOOL finished))completionBlock";
    }
    declareStandardAnimation(baseName, userName, addCompletionBlock, mainMethodTail);
    addCodeMarkWithName(userName);

    const Text suffix = usesAnimationSuffix ? " andAnimationKeySuffix:@\"\"" : "";
    const Text noCompletion = addCompletionBlock ? " completion:NULL" : "";
    const auto holdEndState = [&](Text completion) {
        append(code(),
               "\n{"
               "\n\t[self add%@WithBeginTime:0 andFillMode:kCAFillModeBoth "
               "andRemoveOnCompletion:NO%@%@];"
               "\n}",
               baseName, suffix, completion);
    };
    const auto maybeHoldEndState = [&](Text completion) {
        append(code(),
               "\n{"
               "\n\t[self add%@WithBeginTime:0 andFillMode:removedOnCompletion ? "
               "kCAFillModeRemoved : kCAFillModeBoth "
               "andRemoveOnCompletion:removedOnCompletion%@%@];"
               "\n}",
               baseName, suffix, completion);
    };

    append(code(), "\n\n- (void)add%@", baseName);
    holdEndState(noCompletion);
    if (addCompletionBlock) {
        append(code(), "\n\n- (void)add%@WithCompletion:(void (^)(BOOL finished))completionBlock",
               baseName);
        holdEndState(" completion:completionBlock");
    }
    append(code(), "\n\n- (void)add%@AndRemoveOnCompletion:(BOOL)removedOnCompletion", baseName);
    maybeHoldEndState(noCompletion);
    if (addCompletionBlock) {
        append(code(),
               "\n\n- (void)add%@AndRemoveOnCompletion:(BOOL)removedOnCompletion "
               "completion:(void (^)(BOOL finished))completionBlock",
               baseName);
        maybeHoldEndState(" completion:completionBlock");
    }
    append(code(),
           "\n\n- (void)add%@WithBeginTime:(CFTimeInterval)beginTime andFillMode:(NSString "
           "*)fillMode andRemoveOnCompletion:(BOOL)removedOnCompletion%@"
           "\n{",
           baseName, mainMethodTail);
}

void PCObjCCodeProvider::addTimingFunctionDefinitionWithBuiltInFunctionName(Text variableName,
                                                                            Text functionName) {
    append(code(), "\n\tCAMediaTimingFunction *%@ = [CAMediaTimingFunction functionWithName:%@];",
           variableName, functionName);
}

void PCObjCCodeProvider::addTimingFunctionDefinitionWithControlPoints(Text variableName,
                                                                      QPointF controlPoint1,
                                                                      QPointF controlPoint2) {
    append(code(),
           "\n\tCAMediaTimingFunction *%@ = [CAMediaTimingFunction "
           "functionWithControlPoints:%0.2f :%0.2f :%0.2f :%0.2f];",
           variableName, controlPoint1.x(), controlPoint1.y(), controlPoint2.x(),
           controlPoint2.y());
}

void PCObjCCodeProvider::addStandardAnimationWithBaseName(Text baseName, std::string addCode,
                                                          Text removeCode, bool) {
    addPiece(std::move(addCode));
    append(code(),
           "\n}"
           "\n\n- (void)remove%@\n{",
           baseName);
    code() += removeCode;
    append(code(), "\n}");
}

void PCObjCCodeProvider::addAnimationDidStopMethod() {
    append(code(),
           "\n\n- (void)animationDidStop:(CAAnimation *)anim finished:(BOOL)flag"
           "\n{"
           "\n\tvoid (^completion)(BOOL) = [self.completionBlocksByAnimation objectForKey:anim];"
           "\n\t[self.completionBlocksByAnimation removeObjectForKey:anim];"
           "\n\tif (completion)"
           "\n\t{"
           "\n\t\tcompletion(flag);"
           "\n\t}"
           "\n}");
}

void PCObjCCodeProvider::addRemoveAllAnimationsMethodWithBaseMethodNames(
    const std::vector<std::string>& baseMethodNames) {
    append(m_header, "\n\n- (void)removeAllAnimations;");
    append(code(),
           "\n\n- (void)removeAllAnimations"
           "\n{");
    code() += generateForMac() ? "\n\tfor (CALayer *layer in self.layersByName.allValues)"
                                 "\n\t{"
                                 "\n\t\t[layer removeAllAnimations];"
                               : "\n\tfor (UIView *view in self.viewsByName.allValues)"
                                 "\n\t{"
                                 "\n\t\t[view.layer removeAllAnimations];";
    append(code(), "\n\t}");
    for (const std::string& baseName : baseMethodNames) {
        codeForRemovingRepresentativeAnimationWithBaseName(code(), baseName);
    }
    append(code(), "\n}");
}

// Pieces of animation code

void PCObjCCodeProvider::codeForFloatWithName(std::string& out, Text name, float value) const {
    append(out, "\n\tfloat %@ = %0.3f;", name, value);
}

void PCObjCCodeProvider::codeForAnimationWithVariableName(
    std::string& out, const KeyframeAnimationCode& animation) const {
    const Text variable = animation.variableName;
    append(out,
           "\n\n\tCAKeyframeAnimation *%@ = [CAKeyframeAnimation animationWithKeyPath:@\"%@\"];"
           "\n\t%@.duration = %@;"
           "\n\t%@.values = @[%@];"
           "\n\t%@.keyTimes = @[%@];"
           "\n\t%@.timingFunctions = @[%@];",
           variable, animation.keypath, variable, animation.duration, variable, animation.values,
           variable, animation.times, variable, animation.timingFunctions);
    if (animation.autoreverses) {
        append(out, "\n\t%@.autoreverses = %@;", variable, *animation.autoreverses ? "YES" : "NO");
    }
    if (animation.repeatForever) { append(out, "\n\t%@.repeatCount = HUGE_VALF;", variable); }
    append(out,
           "\n\t%@.beginTime = beginTime;"
           "\n\t%@.fillMode = fillMode;"
           "\n\t%@.removedOnCompletion = removedOnCompletion;",
           variable, variable, variable);
    std::string key;
    if (animation.animationKeySuffix) {
        append(key, "[@\"%@\" stringByAppendingString:%@]", literal(animation.animationKey),
               *animation.animationKeySuffix);
    } else {
        append(key, "@\"%@\"", literal(animation.animationKey));
    }
    const std::string elementName = literal(animation.elementUserName);
    if (generateForMac()) {
        append(out, "\n\t[self.layersByName[@\"%@\"] addAnimation:%@ forKey:%@];", elementName,
               variable, key);
    } else {
        append(out, "\n\t[[self.viewsByName[@\"%@\"] layer] addAnimation:%@ forKey:%@];",
               elementName, variable, key);
    }
}

void PCObjCCodeProvider::codeForRemovingAnimationWithKey(std::string& out, Text key,
                                                         Text elementName, bool isLayer) const {
    if (isLayer) {
        append(out, "\n\t[self.layersByName[@\"%@\"] removeAnimationForKey:@\"%@\"];",
               literal(elementName), literal(key));
    } else {
        append(out, "\n\t[[self.viewsByName[@\"%@\"] layer] removeAnimationForKey:@\"%@\"];",
               literal(elementName), literal(key));
    }
}

void PCObjCCodeProvider::codeForAddingRepresentativeAnimationWithBaseName(std::string& out,
                                                                          Text baseName,
                                                                          float duration) const {
    append(out,
           "\n\n\tif (completionBlock)"
           "\n\t{"
           "\n\t\tCABasicAnimation *representativeAnimation = [CABasicAnimation "
           "animationWithKeyPath:@\"not.a.real.key\"];"
           "\n\t\trepresentativeAnimation.duration = %0.3f;"
           "\n\t\trepresentativeAnimation.delegate = self;"
           "\n\t\t[self.layer addAnimation:representativeAnimation forKey:@\"%@\"];"
           "\n\t\t[self.completionBlocksByAnimation setObject:completionBlock forKey:[self.layer "
           "animationForKey:@\"%@\"]];"
           "\n\t}",
           duration, baseName, baseName);
}

void PCObjCCodeProvider::codeForRemovingRepresentativeAnimationWithBaseName(std::string& out,
                                                                            Text baseName) const {
    append(out, "\n\t[self.layer removeAnimationForKey:@\"%@\"];", baseName);
}

void PCObjCCodeProvider::codeForPropertySetterString(std::string& out, Text text) const {
    append(out, "\n\t%@;", text);
}

void PCObjCCodeProvider::codeForBoxedNumber(std::string& out, float value) const {
    out += "@(";
    appendThreeDecimals(out, value);
    out += ')';
}

void PCObjCCodeProvider::codeForImageRefWithName(std::string& out, Text imageFileName) const {
    if (generateForMac()) {
        append(out, "(id)[NSImage imageNamed:@\"%@\"]", literalWithoutExtension(imageFileName));
    } else {
        append(out, "(id)[UIImage imageNamed:@\"%@\"].CGImage",
               literalWithoutExtension(imageFileName));
    }
}

void PCObjCCodeProvider::codeForPropertySetterWithArrayString(std::string& out, Text name,
                                                              Text arrayText) const {
    append(out, "\n\t%@ = @[%@];", name, arrayText);
}

}  // namespace tweenery
