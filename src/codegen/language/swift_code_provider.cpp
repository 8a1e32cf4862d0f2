#include "codegen/language/swift_code_provider.h"

#include <utility>

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

// File and class

void PCSwiftCodeProvider::addTopComments() {
    code() += topCommentsForFileName(generatedClassName() + ".swift");
}

void PCSwiftCodeProvider::beginImports() {
    code() += '\n';
}

void PCSwiftCodeProvider::addFrameworkDependency(Text frameworkName) {
    append(code(), "\nimport %@", frameworkName);
}

void PCSwiftCodeProvider::addFlippedViewMethod() {
    append(code(),
           "\n\n"
           "\toverride var flipped:Bool {\n"
           "\t\tget {\n"
           "\t\t\treturn true\n"
           "\t\t}\n"
           "\t}\n");
}

void PCSwiftCodeProvider::beginClassDefinitionWithSuperName(Text superName,
                                                            bool useCompletionBlocksTable) {
    append(code(),
           "\n\n@IBDesignable"
           "\nclass %@ : %@ {\n",
           generatedClassName(), superName);
    if (useCompletionBlocksTable) {
        append(code(),
               "\n\n\tvar animationCompletions = Dictionary<CAAnimation, (Bool) -> Void>()");
    }
}

void PCSwiftCodeProvider::addViewsByNameProperty() {
    append(code(), "\n\tvar viewsByName: [String : %@]!", generateForMac() ? "NSView" : "UIView");
}

void PCSwiftCodeProvider::addLayersByNameProperty() {
    append(code(), "\n\tvar layersByName: [String : CALayer]!");
}

void PCSwiftCodeProvider::addInitializersForViewWithCanvasSize(QSizeF size) {
    append(code(),
           "\n\n\toverride init() {\n\t\tsuper.init(frame: CGRect(x: 0, y: 0, width: %d, height: "
           "%d))\n\t\tself.setupHierarchy()\n\t}",
           cutToInt32(size.width()), cutToInt32(size.height()));
    append(code(),
           "\n\n\toverride init(frame: CGRect) {\n\t\tsuper.init(frame: "
           "frame)\n\t\tself.setupHierarchy()\n\t}");
    append(code(),
           "\n\n\trequired init%@(coder aDecoder: NSCoder) {\n\t\tsuper.init(coder: "
           "aDecoder)\n\t\tself.setupHierarchy()\n\t}",
           generateForMac() ? "?" : "");
}

void PCSwiftCodeProvider::addCodeMarkWithName(Text name) {
    append(code(), "\n\n\t// - MARK: %@", comment(name));
}

void PCSwiftCodeProvider::addLayoutSubelements() {
    if (generateForMac()) {
        append(code(),
               "\n\n\tfunc frameDidChange(notification: NSNotification) {"
               "\n\t\tif let scalingView = self.layersByName[\"__scaling__\"] {"
               "\n\t\t\tvar xScale = self.bounds.size.width / scalingView.bounds.size.width"
               "\n\t\t\tvar yScale = self.bounds.size.height / scalingView.bounds.size.height"
               "\n\t\t\tlet scale = min(xScale, yScale)"
               "\n\t\t\txScale = scale"
               "\n\t\t\tyScale = scale"
               "\n\t\t\tCATransaction.begin()"
               "\n\t\t\tCATransaction.setValue(kCFBooleanTrue, forKey: "
               "kCATransactionDisableActions)"
               "\n\t\t\tscalingView.transform = CATransform3DMakeScale(xScale, yScale, 1.0)"
               "\n\t\t\tscalingView.position = CGPoint(x:CGRectGetMidX(self.bounds), "
               "y:CGRectGetMidY(self.bounds))"
               "\n\t\t\tCATransaction.commit()"
               "\n\t\t}"
               "\n\t}");
    } else {
        append(code(),
               "\n\n\toverride func layoutSubviews() {"
               "\n\t\tsuper.layoutSubviews()"
               "\n\n\t\tif let scalingView = self.viewsByName[\"__scaling__\"] {"
               "\n\t\t\tvar xScale = self.bounds.size.width / scalingView.bounds.size.width"
               "\n\t\t\tvar yScale = self.bounds.size.height / scalingView.bounds.size.height"
               "\n\t\t\tswitch contentMode {"
               "\n\t\t\tcase .ScaleToFill:"
               "\n\t\t\t\tbreak"
               "\n\t\t\tcase .ScaleAspectFill:"
               "\n\t\t\t\tlet scale = max(xScale, yScale)"
               "\n\t\t\t\txScale = scale"
               "\n\t\t\t\tyScale = scale"
               "\n\t\t\tdefault:"
               "\n\t\t\t\tlet scale = min(xScale, yScale)"
               "\n\t\t\t\txScale = scale"
               "\n\t\t\t\tyScale = scale"
               "\n\t\t\t}"
               "\n\t\t\tscalingView.transform = CGAffineTransformMakeScale(xScale, yScale)"
               "\n\t\t\tscalingView.center = CGPoint(x:CGRectGetMidX(self.bounds), "
               "y:CGRectGetMidY(self.bounds))"
               "\n\t\t}"
               "\n\t}");
    }
}

void PCSwiftCodeProvider::endClassDefinition() {
    append(code(), "\n}");
}

FileContents PCSwiftCodeProvider::fileContentsByName() {
    FileContents contents;
    contents[QString::fromStdString(generatedClassName()) + u".swift"_s] = takeCode();
    return contents;
}

// setupHierarchy

void PCSwiftCodeProvider::setWantsLayer(bool wantsLayer, Text variableName) {
    append(code(), "\n\t\t%@.wantsLayer = %@", variableName, wantsLayer ? "true" : "false");
}

void PCSwiftCodeProvider::beginSetupAndUseCompletionBlocksTable(bool) {
    append(code(), "\n\n\tfunc setupHierarchy() {");
    if (generateForMac()) {
        append(code(),
               "\n\t\tNSNotificationCenter.defaultCenter().addObserver(self, selector: "
               "\"frameDidChange:\", name: NSViewFrameDidChangeNotification, object: self)");
    }
}

void PCSwiftCodeProvider::addLocalSetupVariablesIncludesLayer(bool includesLayers, bool andViews) {
    if (includesLayers) { append(code(), "\n\t\tvar layersByName: [String : CALayer] = [:]"); }
    if (andViews) {
        append(code(), "\n\t\tvar viewsByName: [String : %@] = [:]",
               generateForMac() ? "NSView" : "UIView");
    }
    append(code(), "\n\t\tlet bundle = NSBundle(forClass:self.dynamicType)");
}

void PCSwiftCodeProvider::addScalingContainerWithSize(QSizeF size, bool, bool clippedToBounds) {
    append(code(), "\n\t\tlet __scaling__ = %@()", generateForMac() ? "CALayer" : "UIView");
    append(code(), "\n\t\t__scaling__.bounds = CGRect(x:0, y:0, width:%d, height:%d)",
           cutToInt32(size.width()), cutToInt32(size.height()));
    append(code(), "\n\t\t__scaling__.%@ = CGPoint(x:%0.1f, y:%0.1f)",
           generateForMac() ? "position" : "center", size.width() / 2, size.height() / 2);
    if (clippedToBounds) {
        code() += generateForMac() ? "\n\t\t__scaling__.masksToBounds = true"
                                   : "\n\t\t__scaling__.layer.masksToBounds = true";
    }
    code() += generateForMac() ? "\n\t\tself.layer?.addSublayer(__scaling__)"
                                 "\n\t\tlayersByName[\"__scaling__\"] = __scaling__"
                               : "\n\t\tself.addSubview(__scaling__)"
                                 "\n\t\tviewsByName[\"__scaling__\"] = __scaling__";
}

void PCSwiftCodeProvider::addLayerWithVariableName(Text variableName, Text elementName) {
    addVariableWithName(variableName, "CALayer");
    append(code(), "\n\t\t%@.name = \"%@\"", variableName, literal(elementName));
}

void PCSwiftCodeProvider::addVariableWithName(Text variableName, Text type) {
    append(code(), "\n\t\tlet %@ = %@()", variableName, type);
}

void PCSwiftCodeProvider::addCustomButtonVariableWithName(Text variableName) {
    append(code(), "\n\t\tlet %@ = UIButton.buttonWithType(.Custom) as UIButton", variableName);
}

void PCSwiftCodeProvider::setFrameWithRect(QRectF rect, Text variableName) {
    append(code(), "\n\t\t%@.frame = CGRectMake(%0.3f, %0.3f, %0.3f, %0.3f)", variableName,
           rect.x(), rect.y(), rect.width(), rect.height());
}

void PCSwiftCodeProvider::setBoundsWithSize(QSizeF size, Text variableName) {
    append(code(), "\n\t\t%@.bounds = CGRect(x:0, y:0, width:%0.1f, height:%0.1f)", variableName,
           size.width(), size.height());
}

void PCSwiftCodeProvider::setAnchor(QPointF anchor, Text variableName, bool isLayer) {
    append(code(), "\n\t\t%@%@.anchorPoint = CGPoint(x:%0.3f, y:%0.3f)", variableName,
           isLayer ? "" : ".layer", anchor.x(), anchor.y());
}

void PCSwiftCodeProvider::addImageVariableWithName(Text variableName, Text imageFileName) {
    if (generateForMac()) {
        append(code(),
               "\n\t\tvar %@: NSImage!"
               "\n\t\tif let imagePath = bundle.pathForImageResource(\"%@\") {"
               "\n\t\t\t%@ = NSImage(contentsOfFile:imagePath)\n\t\t}",
               variableName, literalWithoutExtension(imageFileName), variableName);
    } else {
        append(code(),
               "\n\t\tvar %@: UIImage!"
               "\n\t\tif let imagePath = bundle.pathForResource(\"%@\", ofType:nil) {"
               "\n\t\t\t%@ = UIImage(contentsOfFile:imagePath)\n\t\t}",
               variableName, literal(imageFileName), variableName);
    }
}

void PCSwiftCodeProvider::setLayerContents(Text layerVariableName, Text imageVariableName) {
    append(code(), "\n\t\t%@.contents = %@%@", layerVariableName, imageVariableName,
           generateForMac() ? "" : ".CGImage");
}

void PCSwiftCodeProvider::setImageFromVariableNameOnImageView(Text imageVariableName,
                                                              Text viewVariableName) {
    append(code(), "\n\t\t%@.image = %@", viewVariableName, imageVariableName);
}

void PCSwiftCodeProvider::setImageFromVariableNameOnButton(Text imageVariableName,
                                                           Text buttonVariableName) {
    append(code(), "\n\t\t%@.setImage(%@, forState:.Normal)", buttonVariableName,
           imageVariableName);
}

void PCSwiftCodeProvider::setCenterContentModeOnVariableNamed(Text variableName) {
    if (generateForMac()) { return; }
    append(code(), "\n\t\t%@.contentMode = .Center;", variableName);
}

void PCSwiftCodeProvider::setPosition(QPointF position, Text variableName, bool isLayer, bool) {
    append(code(), "\n\t\t%@.%@ = CGPoint(x:%0.3f, y:%0.3f)", variableName,
           isLayer ? "position" : "layer.position", position.x(), position.y());
}

void PCSwiftCodeProvider::setOpacity(float opacity, Text variableName, bool isLayer) {
    append(code(), "\n\t\t%@.%@ = %0.2f", variableName, isLayer ? "opacity" : "alpha", opacity);
}

void PCSwiftCodeProvider::setTransformWithXScaleAndZRotation(float xScale, float yScale,
                                                             float zRotation, Text variableName,
                                                             bool isLayer) {
    if (isLayer) {
        append(code(),
               "\n\t\t%@.transform = CATransform3DScale(CATransform3DMakeRotation(%0.2f, 0, 0, 1), "
               "%0.2f, %0.2f, 1.0)",
               variableName, zRotation, xScale, yScale);
    } else {
        append(code(),
               "\n\t\t%@.transform = CGAffineTransformScale(CGAffineTransformMakeRotation(%0.2f), "
               "%0.2f, %0.2f)",
               variableName, zRotation, xScale, yScale);
    }
}

void PCSwiftCodeProvider::setTransformWithXScale(float xScale, float yScale, Text variableName,
                                                 bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t\t%@.transform = CATransform3DMakeScale(%0.2f, %0.2f, 1.0)",
               variableName, xScale, yScale);
    } else {
        append(code(), "\n\t\t%@.transform = CGAffineTransformMakeScale(%0.2f, %0.2f)",
               variableName, xScale, yScale);
    }
}

void PCSwiftCodeProvider::setTransformWithZRotation(float zRotation, Text variableName,
                                                    bool isLayer) {
    if (isLayer) {
        append(code(), "\n\t\t%@.transform = CATransform3DMakeRotation(%0.3f, 0, 0, 1)",
               variableName, zRotation);
    } else {
        append(code(), "\n\t\t%@.transform = CGAffineTransformMakeRotation(%0.3f)", variableName,
               zRotation);
    }
}

void PCSwiftCodeProvider::addElementWithName(Text variableName, bool isLayer,
                                             Text parentVariableName, bool parentIsLayer) {
    Text suffix;
    if (isLayer && !parentIsLayer) { suffix = generateForMac() ? ".layer!" : ".layer"; }
    append(code(), "\n\t\t%@%@.%@(%@)", parentVariableName, suffix,
           isLayer ? "addSublayer" : "addSubview", variableName);
}

void PCSwiftCodeProvider::addElementToByNameDictionaryWithVariableName(Text variableName,
                                                                       Text userName,
                                                                       bool isLayer) {
    append(code(), "\n\t\t%@[\"%@\"] = %@", isLayer ? "layersByName" : "viewsByName",
           literal(userName), variableName);
}

void PCSwiftCodeProvider::endSetupIncludesLayers(bool includesLayers, bool includesViews) {
    append(code(), "\n");
    if (includesLayers) { append(code(), "\n\t\tself.layersByName = layersByName"); }
    if (includesViews) { append(code(), "\n\t\tself.viewsByName = viewsByName"); }
    append(code(), "\n\t}");
}

// Standard animations

void PCSwiftCodeProvider::beginStandardAnimationWithBaseName(Text baseName, Text userName,
                                                             bool addCompletionBlock,
                                                             bool usesAnimationSuffix) {
    addCodeMarkWithName(userName);

    const Text noCompletion = addCompletionBlock ? ", nil" : "";
    const auto holdEndState = [&](Text completion) {
        append(code(),
               "\n\t\tadd%@WithBeginTime(0, fillMode: kCAFillModeBoth, removedOnCompletion: "
               "false%@)"
               "\n\t}",
               baseName, completion);
    };
    const auto maybeHoldEndState = [&](Text completion) {
        append(code(),
               "\n\t\tadd%@WithBeginTime(0, fillMode: removedOnCompletion ? kCAFillModeRemoved : "
               "kCAFillModeBoth, removedOnCompletion: removedOnCompletion%@%@)"
               "\n\t}",
               baseName, usesAnimationSuffix ? ", animationKeySuffix:\"\"" : "", completion);
    };

    append(code(), "\n\n\tfunc add%@() {", baseName);
    holdEndState(noCompletion);
    if (addCompletionBlock) {
        append(code(), "\n\n\tfunc add%@(completion: ((Bool) -> Void)?) {", baseName);
        holdEndState(", completion");
    }
    append(code(), "\n\n\tfunc add%@(#removedOnCompletion: Bool) {", baseName);
    maybeHoldEndState(noCompletion);
    if (addCompletionBlock) {
        append(code(),
               "\n\n\tfunc add%@(#removedOnCompletion: Bool, completion: ((Bool) -> Void)?) {",
               baseName);
        maybeHoldEndState(", completion");
    }
    append(code(),
           "\n\n\tfunc add%@WithBeginTime(beginTime: CFTimeInterval, fillMode: String, "
           "removedOnCompletion: Bool%@%@) {",
           baseName, usesAnimationSuffix ? ", animationKeySuffix: String" : "",
           addCompletionBlock ? ", completion: ((Bool) -> Void)?" : "");
}

void PCSwiftCodeProvider::addTimingFunctionDefinitionWithBuiltInFunctionName(Text variableName,
                                                                             Text functionName) {
    append(code(), "\n\t\tlet %@ = CAMediaTimingFunction(name: %@)", variableName, functionName);
}

void PCSwiftCodeProvider::addTimingFunctionDefinitionWithControlPoints(Text variableName,
                                                                       QPointF controlPoint1,
                                                                       QPointF controlPoint2) {
    append(
        code(), "\n\t\tlet %@ = CAMediaTimingFunction(controlPoints: %0.2f, %0.2f, %0.2f, %0.2f)",
        variableName, controlPoint1.x(), controlPoint1.y(), controlPoint2.x(), controlPoint2.y());
}

void PCSwiftCodeProvider::addStandardAnimationWithBaseName(Text baseName, std::string addCode,
                                                           Text removeCode, bool) {
    addPiece(std::move(addCode));
    append(code(),
           "\n\t}"
           "\n\n\tfunc remove%@() {",
           baseName);
    code() += removeCode;
    append(code(), "\n\t}");
}

void PCSwiftCodeProvider::addAnimationDidStopMethod() {
    append(code(),
           "\n\n\toverride func animationDidStop(anim: CAAnimation!, finished flag: Bool) {"
           "\n\t\tif let completion = self.animationCompletions[anim] {"
           "\n\t\t\tself.animationCompletions.removeValueForKey(anim)"
           "\n\t\t\tcompletion(flag)"
           "\n\t\t}"
           "\n\t}");
}

void PCSwiftCodeProvider::addRemoveAllAnimationsMethodWithBaseMethodNames(
    const std::vector<std::string>& baseMethodNames) {
    append(code(),
           "\n\n\tfunc removeAllAnimations() {"
           "\n\t\tfor subview in viewsByName.values {"
           "\n\t\t\tsubview.layer%@.removeAllAnimations()"
           "\n\t\t}",
           generateForMac() ? "!" : "");
    for (const std::string& baseName : baseMethodNames) {
        codeForRemovingRepresentativeAnimationWithBaseName(code(), baseName);
    }
    append(code(), "\n\t}");
}

// Pieces of animation code

void PCSwiftCodeProvider::codeForFloatWithName(std::string& out, Text name, float value) const {
    append(out, "\n\t\tlet %@ = %0.3f", name, value);
}

void PCSwiftCodeProvider::codeForAnimationWithVariableName(
    std::string& out, const KeyframeAnimationCode& animation) const {
    const Text variable = animation.variableName;
    append(out,
           "\n\n\t\tlet %@ = CAKeyframeAnimation(keyPath: \"%@\")"
           "\n\t\t%@.duration = %@"
           "\n\t\t%@.values = [%@]%@"
           "\n\t\t%@.keyTimes = [%@]"
           "\n\t\t%@.timingFunctions = [%@]",
           variable, animation.keypath, variable, animation.duration, variable, animation.values,
           generateForMac() && animation.keypath == "contents" ? " as [NSImage!]" : "", variable,
           animation.times, variable, animation.timingFunctions);
    if (animation.autoreverses) {
        append(out, "\n\t\t%@.autoreverses = %@", variable,
               *animation.autoreverses ? "true" : "false");
    }
    if (animation.repeatForever) { append(out, "\n\t\t%@.repeatCount = HUGE", variable); }
    append(out,
           "\n\t\t%@.beginTime = beginTime"
           "\n\t\t%@.fillMode = fillMode"
           "\n\t\t%@.removedOnCompletion = removedOnCompletion",
           variable, variable, variable);
    std::string key;
    append(key, "\"%@\"", literal(animation.animationKey));
    if (animation.animationKeySuffix) { append(key, " + %@", *animation.animationKeySuffix); }
    const std::string elementName = literal(animation.elementUserName);
    if (generateForMac()) {
        append(out, "\n\t\tself.layersByName[\"%@\"]?.addAnimation(%@, forKey:%@)", elementName,
               variable, key);
    } else {
        append(out, "\n\t\tself.viewsByName[\"%@\"]?.layer.addAnimation(%@, forKey:%@)",
               elementName, variable, key);
    }
}

void PCSwiftCodeProvider::codeForRemovingAnimationWithKey(std::string& out, Text key,
                                                          Text elementName, bool isLayer) const {
    if (isLayer) {
        append(out, "\n\t\tself.layersByName[\"%@\"]?.removeAnimationForKey(\"%@\")",
               literal(elementName), literal(key));
    } else {
        append(out, "\n\t\tself.viewsByName[\"%@\"]?.layer.removeAnimationForKey(\"%@\")",
               literal(elementName), literal(key));
    }
}

void PCSwiftCodeProvider::codeForAddingRepresentativeAnimationWithBaseName(std::string& out,
                                                                           Text baseName,
                                                                           float duration) const {
    append(out,
           "\n\t\tif let complete = completion {"
           "\n\t\t\tlet representativeAnimation = CABasicAnimation(keyPath: \"not.a.real.key\")"
           "\n\t\t\trepresentativeAnimation.duration = %0.3f"
           "\n\t\t\trepresentativeAnimation.delegate = self",
           duration);
    append(out,
           "\n\t\t\tself.layer%@.addAnimation(representativeAnimation, forKey: \"%@\")"
           "\n\t\t\tself.animationCompletions[layer%@.animationForKey(\"%@\")] = complete"
           "\n\t\t}",
           generateForMac() ? "?" : "", baseName, generateForMac() ? "!" : "", baseName);
}

void PCSwiftCodeProvider::codeForRemovingRepresentativeAnimationWithBaseName(std::string& out,
                                                                             Text baseName) const {
    append(out, "\n\t\tself.layer%@.removeAnimationForKey(\"%@\")", generateForMac() ? "?" : "",
           baseName);
}

void PCSwiftCodeProvider::codeForPropertySetterString(std::string& out, Text text) const {
    append(out, "\n\t\t%@", text);
}

void PCSwiftCodeProvider::codeForBoxedNumber(std::string& out, float value) const {
    appendThreeDecimals(out, value);
    out += " as Float";
}

void PCSwiftCodeProvider::codeForImageRefWithName(std::string& out, Text imageFileName) const {
    if (generateForMac()) {
        append(out, "NSImage(named: \"%@\")", literalWithoutExtension(imageFileName));
    } else {
        append(out, "UIImage(named: \"%@\")!.CGImage", literalWithoutExtension(imageFileName));
    }
}

void PCSwiftCodeProvider::codeForPropertySetterWithArrayString(std::string& out, Text name,
                                                               Text arrayText) const {
    append(out, "\n\t\t%@ = [%@]", name, arrayText);
}

}  // namespace tweenery
