#include "codegen/objc_code_provider.h"

#include <utility>

#include "platform/number_text.h"

namespace tweenery {

using namespace Qt::StringLiterals;

// Files and class

void PCObjCCodeProvider::addTopComments() {
    m_header += topCommentsForFileName(generatedClassName() + ".h");
    code() += topCommentsForFileName(generatedClassName() + ".m");
}

void PCObjCCodeProvider::beginImports() {
    m_header += '\n';
    code() += '\n';
}

void PCObjCCodeProvider::addFrameworkDependency(Text frameworkName) {
    append(m_header, "\n#import <%@/%@.h>", frameworkName, frameworkName);
}

void PCObjCCodeProvider::addClassDependency(Text className) {
    append(m_header, "\n#import \"%@.h\"", className);
}

void PCObjCCodeProvider::endImports() {
    append(code(), "\n#import \"%@.h\"", generatedClassName());
}

void PCObjCCodeProvider::addFlippedViewMethod() {
    append(code(),
           "\n\n"
           "- (BOOL)isFlipped {\n"
           "\treturn YES;\n"
           "}\n");
}

void PCObjCCodeProvider::beginClassDefinitionWithSuperName(Text superName,
                                                           bool useCompletionBlocksTable) {
    append(m_header,
           "\n\nIB_DESIGNABLE"
           "\n@interface %@ : %@"
           "\n",
           generatedClassName(), superName);
    if (useCompletionBlocksTable) {
        append(code(),
               "\n\n@interface %@ ()"
               "\n@property (strong, nonatomic) NSMapTable *completionBlocksByAnimation;"
               "\n@end",
               generatedClassName());
    }
    append(code(), "\n\n@implementation %@", generatedClassName());
}

void PCObjCCodeProvider::addViewsByNameProperty() {
    append(m_header, "\n@property (strong, nonatomic) NSDictionary *viewsByName;");
}

void PCObjCCodeProvider::addLayersByNameProperty() {
    append(m_header, "\n@property (strong, nonatomic) NSDictionary *layersByName;");
}

void PCObjCCodeProvider::addInitializersForViewWithCanvasSize(QSizeF size) {
    append(code(),
           "\n\n- (instancetype)init\n{\n\treturn [self initWithFrame:CGRectMake(0,0,%d,%d)];\n}",
           cutToInt32(size.width()), cutToInt32(size.height()));
    append(code(),
           "\n\n- (instancetype)initWithFrame:(CGRect)frame\n{\n\tself = [super "
           "initWithFrame:frame];\n\tif (self)\n\t{\n\t\t[self setupHierarchy];\n\t}\n\treturn "
           "self;\n}");
    append(code(),
           "\n\n- (instancetype)initWithCoder:(NSCoder *)coder\n{\n\tself = [super "
           "initWithCoder:coder];\n\tif (self)\n\t{\n\t\t[self setupHierarchy];\n\t}\n\treturn "
           "self;\n}");
}

void PCObjCCodeProvider::addCodeMarkWithName(Text name) {
    append(code(), "\n\n#pragma mark - %@", comment(name));
}

void PCObjCCodeProvider::addLayoutSubelements() {
    if (generateForMac()) {
        append(code(),
               "\n\n- (void)frameDidChange:(NSNotification *)notification"
               "\n{"
               "\n\tCALayer *scalingView = self.layersByName[@\"__scaling__\"];"
               "\n\tfloat xScale = self.bounds.size.width / scalingView.bounds.size.width;"
               "\n\tfloat yScale = self.bounds.size.height / scalingView.bounds.size.height;"
               "\n\tfloat scale = MIN(xScale, yScale);"
               "\n\txScale = scale;"
               "\n\tyScale = scale;"
               "\n\t[CATransaction begin];"
               "\n\t[CATransaction setValue:(id)kCFBooleanTrue "
               "forKey:kCATransactionDisableActions];"
               "\n\tscalingView.transform = CATransform3DMakeScale(xScale, yScale, 1.0);"
               "\n\tscalingView.position = CGPointMake(CGRectGetMidX(self.bounds), "
               "CGRectGetMidY(self.bounds));"
               "\n\t[CATransaction commit];"
               "\n}");
    } else {
        append(code(),
               "\n\n- (void)layoutSubviews"
               "\n{"
               "\n\t[super layoutSubviews];"
               "\n\n\tUIView *scalingView = self.viewsByName[@\"__scaling__\"];"
               "\n\tfloat xScale = self.bounds.size.width / scalingView.bounds.size.width;"
               "\n\tfloat yScale = self.bounds.size.height / scalingView.bounds.size.height;"
               "\n\tswitch (self.contentMode) {"
               "\n\t\tcase UIViewContentModeScaleToFill:"
               "\n\t\t\tbreak;"
               "\n\t\tcase UIViewContentModeScaleAspectFill:"
               "\n\t\t{"
               "\n\t\t\tfloat scale = MAX(xScale, yScale);"
               "\n\t\t\txScale = scale;"
               "\n\t\t\tyScale = scale;"
               "\n\t\t\tbreak;"
               "\n\t\t}"
               "\n\t\tdefault:"
               "\n\t\t{"
               "\n\t\t\tfloat scale = MIN(xScale, yScale);"
               "\n\t\t\txScale = scale;"
               "\n\t\t\tyScale = scale;"
               "\n\t\t\tbreak;"
               "\n\t\t}"
               "\n\t}"
               "\n\tscalingView.transform = CGAffineTransformMakeScale(xScale, yScale);"
               "\n\tscalingView.center = CGPointMake(CGRectGetMidX(self.bounds), "
               "CGRectGetMidY(self.bounds));"
               "\n}");
    }
}

void PCObjCCodeProvider::endClassDefinition() {
    append(code(), "\n\n@end");
    append(m_header, "\n\n@end");
}

FileContents PCObjCCodeProvider::fileContentsByName() {
    const QString className = QString::fromStdString(generatedClassName());
    FileContents contents;
    contents[className + u".m"_s] = takeCode();
    contents[className + u".h"_s] = {std::exchange(m_header, {})};
    return contents;
}

// setupHierarchy

void PCObjCCodeProvider::setWantsLayer(bool wantsLayer, Text variableName) {
    append(code(), "\n\t[%@ setWantsLayer:%@];", variableName, wantsLayer ? "YES" : "NO");
}

void PCObjCCodeProvider::beginSetupAndUseCompletionBlocksTable(bool useCompletionBlocksTable) {
    append(code(),
           "\n\n- (void)setupHierarchy"
           "\n{");
    if (useCompletionBlocksTable) {
        append(code(),
               "\n\tself.completionBlocksByAnimation = [NSMapTable "
               "mapTableWithKeyOptions:NSPointerFunctionsOpaqueMemory "
               "valueOptions:NSPointerFunctionsStrongMemory];");
    }
    if (generateForMac()) {
        append(code(),
               "\n\t[[NSNotificationCenter defaultCenter] addObserver:self "
               "selector:@selector(frameDidChange:) name:NSViewFrameDidChangeNotification "
               "object:self];");
    }
}

void PCObjCCodeProvider::addLocalSetupVariablesIncludesLayer(bool includesLayers, bool andViews) {
    if (includesLayers) {
        append(code(), "\n\tNSMutableDictionary *layersByName = [NSMutableDictionary dictionary];");
    }
    if (andViews) {
        append(code(), "\n\tNSMutableDictionary *viewsByName = [NSMutableDictionary dictionary];");
    }
    append(code(), "\n\tNSBundle *bundle = [NSBundle bundleForClass:[self class]];");
}

void PCObjCCodeProvider::addScalingContainerWithSize(QSizeF size, bool, bool clippedToBounds) {
    code() += generateForMac() ? "\n\n\tCALayer *__scaling__ = [CALayer layer];"
                               : "\n\n\tUIView *__scaling__ = [UIView new];";
    append(code(), "\n\t__scaling__.bounds = CGRectMake(0, 0, %d, %d);", cutToInt32(size.width()),
           cutToInt32(size.height()));
    append(code(), "\n\t__scaling__.%@ = CGPointMake(%0.1f, %0.1f);",
           generateForMac() ? "position" : "center", size.width() / 2, size.height() / 2);
    if (clippedToBounds) {
        code() += generateForMac() ? "\n\t__scaling__.masksToBounds = YES;"
                                   : "\n\t__scaling__.layer.masksToBounds = YES;";
    }
    code() += generateForMac() ? "\n\t[self.layer addSublayer:__scaling__];"
                                 "\n\tlayersByName[@\"__scaling__\"] = __scaling__;"
                               : "\n\t[self addSubview:__scaling__];"
                                 "\n\tviewsByName[@\"__scaling__\"] = __scaling__;";
}

void PCObjCCodeProvider::addLayerWithVariableName(Text variableName, Text elementName) {
    append(code(),
           "\n\tCALayer *%@ = [CALayer layer];"
           "\n\t%@.name = @\"%@\";",
           variableName, variableName, literal(elementName));
}

void PCObjCCodeProvider::addVariableWithName(Text variableName, Text type) {
    append(code(), "\n\t%@ *%@ = [%@ new];", type, variableName, type);
}

void PCObjCCodeProvider::addCustomButtonVariableWithName(Text variableName) {
    append(code(), "\n\tUIButton *%@ = [UIButton buttonWithType:UIButtonTypeCustom];",
           variableName);
}

void PCObjCCodeProvider::setFrameWithRect(QRectF rect, Text variableName) {
    append(code(), "\n\t%@.frame = CGRectMake(%0.3f, %0.3f, %0.3f, %0.3f);", variableName, rect.x(),
           rect.y(), rect.width(), rect.height());
}

void PCObjCCodeProvider::setBoundsWithSize(QSizeF size, Text variableName) {
    append(code(), "\n\t%@.bounds = CGRectMake(0, 0, %0.1f, %0.1f);", variableName, size.width(),
           size.height());
}

void PCObjCCodeProvider::setAnchor(QPointF anchor, Text variableName, bool isLayer) {
    append(code(), "\n\t%@%@.anchorPoint = CGPointMake(%0.3f, %0.3f);", variableName,
           isLayer ? "" : ".layer", anchor.x(), anchor.y());
}

void PCObjCCodeProvider::addImageVariableWithName(Text variableName, Text imageFileName) {
    if (generateForMac()) {
        append(code(),
               "\n\tNSImage *%@ = [[NSImage alloc] initWithContentsOfFile:[bundle "
               "pathForImageResource:@\"%@\"]];",
               variableName, literalWithoutExtension(imageFileName));
    } else {
        append(code(),
               "\n\tUIImage *%@ = [UIImage imageWithContentsOfFile:[bundle "
               "pathForResource:@\"%@\" ofType:nil]];",
               variableName, literal(imageFileName));
    }
}

void PCObjCCodeProvider::setLayerContents(Text layerVariableName, Text imageVariableName) {
    if (generateForMac()) {
        append(code(), "\n\t%@.contents = (id)%@;", layerVariableName, imageVariableName);
    } else {
        append(code(), "\n\t%@.contents = (__bridge id)%@.CGImage;", layerVariableName,
               imageVariableName);
    }
}

void PCObjCCodeProvider::setImageFromVariableNameOnImageView(Text imageVariableName,
                                                             Text viewVariableName) {
    append(code(), "\n\t%@.image = %@;", viewVariableName, imageVariableName);
}

void PCObjCCodeProvider::setImageFromVariableNameOnButton(Text imageVariableName,
                                                          Text buttonVariableName) {
    append(code(), "\n\t[%@ setImage:%@ forState:UIControlStateNormal];", buttonVariableName,
           imageVariableName);
}

void PCObjCCodeProvider::setCenterContentModeOnVariableNamed(Text variableName) {
    if (generateForMac()) return;
    append(code(), "\n\t%@.contentMode = UIViewContentModeCenter;", variableName);
}

void PCObjCCodeProvider::setPosition(QPointF position, Text variableName, bool isLayer, bool) {
    append(code(), "\n\t%@.%@ = CGPointMake(%0.3f, %0.3f);", variableName,
           isLayer ? "position" : "layer.position", position.x(), position.y());
}

void PCObjCCodeProvider::setOpacity(float opacity, Text variableName, bool isLayer) {
    append(code(), "\n\t%@.%@ = %0.2f;", variableName, isLayer ? "opacity" : "alpha", opacity);
}

void PCObjCCodeProvider::setTransformWithXScaleAndZRotation(float xScale, float yScale,
                                                            float zRotation, Text variableName,
                                                            bool isLayer) {
    if (isLayer) {
        append(code(),
               "\n\t%@.transform = CATransform3DScale(CATransform3DMakeRotation(%0.2f, 0, 0, 1), "
               "%0.2f, %0.2f, 1.0);",
               variableName, zRotation, xScale, yScale);
    } else {
        append(code(),
               "\n\t%@.transform = CGAffineTransformScale(CGAffineTransformMakeRotation(%0.2f), "
               "%0.2f, %0.2f);",
               variableName, zRotation, xScale, yScale);
    }
}

void PCObjCCodeProvider::setTransformWithXScale(float xScale, float yScale, Text variableName,
                                                bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t%@.transform = CATransform3DMakeScale(%0.2f, %0.2f, 1.0);",
               variableName, xScale, yScale);
    } else {
        append(code(), "\n\t%@.transform = CGAffineTransformMakeScale(%0.2f, %0.2f);", variableName,
               xScale, yScale);
    }
}

void PCObjCCodeProvider::setTransformWithZRotation(float zRotation, Text variableName,
                                                   bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t%@.transform = CATransform3DMakeRotation(%0.3f, 0, 0, 1);",
               variableName, zRotation);
    } else {
        append(code(), "\n\t%@.transform = CGAffineTransformMakeRotation(%0.3f);", variableName,
               zRotation);
    }
}

void PCObjCCodeProvider::addElementWithName(Text variableName, bool isLayer,
                                            Text parentVariableName, bool parentIsLayer) {
    append(code(), "\n\t[%@%@ %@:%@];", parentVariableName,
           isLayer && !parentIsLayer ? ".layer" : "", isLayer ? "addSublayer" : "addSubview",
           variableName);
}

void PCObjCCodeProvider::addElementToByNameDictionaryWithVariableName(Text variableName,
                                                                      Text userName, bool isLayer) {
    append(code(), "\n\t%@[@\"%@\"] = %@;", isLayer ? "layersByName" : "viewsByName",
           literal(userName), variableName);
}

void PCObjCCodeProvider::endSetupIncludesLayers(bool includesLayers, bool includesViews) {
    append(code(), "\n");
    if (includesLayers) append(code(), "\n\tself.layersByName = layersByName;");
    if (includesViews) append(code(), "\n\tself.viewsByName = viewsByName;");
    append(code(), "\n}");
}

// Standard animations

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
    if (animation.repeatForever) append(out, "\n\t%@.repeatCount = HUGE_VALF;", variable);
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

void PCObjCCodeProvider::codeForImageRefWithName(std::string& out, Text imageName) const {
    if (generateForMac()) {
        append(out, "(id)[NSImage imageNamed:@\"%@\"]", literal(imageName));
    } else {
        append(out, "(id)[UIImage imageNamed:@\"%@\"].CGImage", literal(imageName));
    }
}

void PCObjCCodeProvider::codeForPropertySetterWithArrayString(std::string& out, Text name,
                                                              Text arrayText) const {
    append(out, "\n\t%@ = @[%@];", name, arrayText);
}

}  // namespace tweenery
